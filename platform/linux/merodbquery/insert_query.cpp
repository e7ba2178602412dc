#include <merodbquery/insert_query.h>

#include "merodbquery/sql_text.h"

namespace merodbquery {

InsertQuery::InsertQuery(const Session& session, std::string table)
    : Query(session), table_(std::move(table)) {}

bool InsertQuery::Execute() {
    try {
        if (text_.empty()) {
            text_ = GetQuery();
        }
        RunKept(text_);
        return true;
    } catch (const soci::soci_error& error) {
        // Not what(): that goes on with the statement and its values, which the caller knows.
        SetErrorText(error.get_error_message());
        return false;
    }
}

std::string InsertQuery::GetQuery() {
    for (const std::string& column : columns_) {
        CheckedName(column);
    }
    // SOCI finds the values of a record by the names of the placeholders.
    return "INSERT INTO " + CheckedName(table_) + " (" + Joined(columns_, ", ") +
           ") VALUES (:" + Joined(columns_, ", :") + ")";
}

}  // namespace merodbquery
