#include <mailserver-log/record/statement_row.h>
#include <soci/sqlite3/soci-sqlite3.h>

#include <algorithm>
#include <typeinfo>

namespace serverlog::record {

namespace {

soci::sqlite3_statement_backend* BackendOf(soci::details::statement_impl& statement) {
    return static_cast<soci::sqlite3_statement_backend*>(statement.get_backend());
}

}  // namespace

int StatementRow::AttachToColumns(soci::details::statement_impl& statement, int position) {
    backend_ = BackendOf(statement);
    first_ = position - 1;
    places_.clear();
    columns_.resize(static_cast<std::size_t>(backend_->prepare_for_describe() - first_));
    DescribeColumns();
    return static_cast<int>(columns_.size());
}

void StatementRow::DescribeColumns() {
    int number = first_;
    for (Column& column : columns_) {
        backend_->describe_column(++number, column.type, column.name);
    }
}

void StatementRow::AttachToParameters(soci::details::statement_impl& statement) {
    backend_ = BackendOf(statement);
    places_.clear();
}

void StatementRow::BeginBinding() {
    if (backend_->boundByName_ || backend_->boundByPos_) {
        throw soci::soci_error("A record must be the only thing that its statement uses.");
    }
    // SQLite refuses to bind as long as the last run is not taken back.
    sqlite_api::sqlite3_reset(backend_->stmt_);
}

int StatementRow::Place(std::size_t index, const char* name) const {
    if (index == places_.size()) {
        // From the end: of two columns with one name SOCI takes the last.
        const auto found = std::find_if(columns_.rbegin(), columns_.rend(),
                                        [name](const auto& c) { return c.name == name; });
        places_.push_back(found == columns_.rend() ? kNowhere
                                                   : static_cast<int>(columns_.rend() - found) - 1);
    }
    const int place = places_.at(index);
    if (place == kNowhere) {
        throw soci::soci_error("Column '" + std::string(name) + "' not found");
    }
    return place;
}

int StatementRow::TypedPlace(std::size_t index, const char* name, soci::data_type type) const {
    const int place = Place(index, name);
    if (columns_[static_cast<std::size_t>(place)].type != type) {
        throw std::bad_cast();
    }
    return first_ + place;
}

bool StatementRow::IsText(std::size_t index, const char* name) const {
    const soci::data_type type = columns_[static_cast<std::size_t>(Place(index, name))].type;
    return type == soci::dt_string || type == soci::dt_blob;  // SOCI reads both as texts
}

bool StatementRow::IsNull(std::size_t index, const char* name) const {
    return sqlite_api::sqlite3_column_type(backend_->stmt_, first_ + Place(index, name)) ==
           SQLITE_NULL;
}

// NULL reads as 0 and as no text: only then it has to be asked for, which costs a call a column.

bool StatementRow::Read(std::size_t index, const char* name, std::int32_t& value) const {
    const int place = TypedPlace(index, name, soci::dt_integer);
    const int read = sqlite_api::sqlite3_column_int(backend_->stmt_, place);
    if (read == 0 && IsNull(index, name)) {
        return false;
    }
    value = read;
    return true;
}

bool StatementRow::Read(std::size_t index, const char* name, std::int64_t& value) const {
    const int place = TypedPlace(index, name, soci::dt_long_long);
    const std::int64_t read = sqlite_api::sqlite3_column_int64(backend_->stmt_, place);
    if (read == 0 && IsNull(index, name)) {
        return false;
    }
    value = read;
    return true;
}

bool StatementRow::Read(std::size_t index, const char* name, std::string& value) const {
    if (!IsText(index, name)) {
        throw std::bad_cast();
    }
    const int place = first_ + Place(index, name);
    const auto* text = sqlite_api::sqlite3_column_text(backend_->stmt_, place);
    if (text == nullptr) {
        if (IsNull(index, name)) {
            return false;
        }
        value.clear();  // an empty blob, or no memory left for another form of the value
        return true;
    }
    const int size = sqlite_api::sqlite3_column_bytes(backend_->stmt_, place);
    value.assign(reinterpret_cast<const char*>(text), static_cast<std::size_t>(size));
    return true;
}

// 0 for a name that is no parameter.
int StatementRow::Parameter(std::size_t index, const char* name) {
    if (index == places_.size()) {
        places_.push_back(sqlite_api::sqlite3_bind_parameter_index(
            backend_->stmt_, (":" + std::string(name)).c_str()));
    }
    return places_.at(index);
}

namespace {

void Check(int result) {
    if (result != SQLITE_OK) {
        throw soci::soci_error(std::string("Cannot bind a value: ") +
                               sqlite_api::sqlite3_errstr(result));
    }
}

}  // namespace

void StatementRow::Bind(std::size_t index, const char* name, std::int32_t value) {
    if (const int parameter = Parameter(index, name); parameter != 0) {
        Check(sqlite_api::sqlite3_bind_int(backend_->stmt_, parameter, value));
    }
}

void StatementRow::Bind(std::size_t index, const char* name, std::int64_t value) {
    if (const int parameter = Parameter(index, name); parameter != 0) {
        Check(sqlite_api::sqlite3_bind_int64(backend_->stmt_, parameter, value));
    }
}

void StatementRow::Bind(std::size_t index, const char* name, const std::string& value) {
    BindText(index, name, value, false);
}

void StatementRow::BindCopy(std::size_t index, const char* name, const std::string& value) {
    BindText(index, name, value, true);
}

void StatementRow::BindText(std::size_t index, const char* name, const std::string& value,
                            bool copy) {
    // SQLite's own names for these two are casts to a type outside of the namespace it is in here.
    const auto keep = static_cast<sqlite_api::sqlite3_destructor_type>(nullptr);
    const auto transient = reinterpret_cast<sqlite_api::sqlite3_destructor_type>(-1);
    if (const int parameter = Parameter(index, name); parameter != 0) {
        Check(sqlite_api::sqlite3_bind_text(backend_->stmt_, parameter, value.c_str(),
                                            static_cast<int>(value.size()),
                                            copy ? transient : keep));
    }
}

}  // namespace serverlog::record
