#include <mailserver-log/record/statement_row.h>
#include <soci/sqlite3/soci-sqlite3.h>

#include <algorithm>

namespace serverlog::record {

void StatementRow::AttachTo(soci::details::statement_impl& statement) {
    backend_ = static_cast<soci::sqlite3_statement_backend*>(statement.get_backend());
    statement_ = backend_->stmt_;
    places_.clear();
    parameters_.clear();
}

int StatementRow::AttachToColumns(soci::details::statement_impl& statement, int position) {
    AttachTo(statement);
    first_ = position - 1;
    columns_.resize(static_cast<std::size_t>(backend_->prepare_for_describe() - first_));
    DescribeColumns();
    return static_cast<int>(columns_.size());
}

void StatementRow::DescribeColumns() {
    places_.clear();
    int number = first_;
    for (Column& column : columns_) {
        backend_->describe_column(++number, column.type, column.name);
    }
}

void StatementRow::AttachToParameters(soci::details::statement_impl& statement) {
    AttachTo(statement);
}

void StatementRow::BeginBinding() {
    if (backend_->boundByName_ || backend_->boundByPos_) {
        throw soci::soci_error("A record must be the only thing that its statement uses.");
    }
    // SQLite refuses to bind as long as the last run is not taken back.
    sqlite_api::sqlite3_reset(statement_);
}

StatementRow::Place StatementRow::FindColumn(const char* name) const {
    const auto found = std::find_if(columns_.rbegin(), columns_.rend(),
                                    [name](const Column& column) { return column.name == name; });
    if (found == columns_.rend()) {
        throw soci::soci_error("Column '" + std::string(name) + "' not found");
    }
    const int place = static_cast<int>(columns_.rend() - found) - 1;
    return places_.emplace_back(Place{first_ + place, found->type});
}

int StatementRow::FindParameter(const char* name) {
    return parameters_.emplace_back(
        sqlite_api::sqlite3_bind_parameter_index(statement_, (":" + std::string(name)).c_str()));
}

}  // namespace serverlog::record
