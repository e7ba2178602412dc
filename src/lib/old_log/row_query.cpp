#include "old_log/row_query.h"

#include <mailserver-log/utils/error_line.h>
#include <sqlite3.h>

namespace statistic_log {

void RowQuery::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

// The line feeds at the end of the error lines here are on purpose: so readers know them.
RowQuery::RowQuery(MailLogger& logger, DBHandler& handler, const std::string& text)
    : logger_(logger), handler_(handler) {
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v2(handler_.getDB(), text.c_str(), -1, &statement, nullptr);
    statement_.reset(statement);
    if (code != SQLITE_OK) {
        SERVERLOG_ERROR_LINE("sqlite3_prepare_v2: [%d] %s\n", code,
                             sqlite3_errmsg(handler_.getDB()));
        logger_.HandleDBError(handler_, code);
    }
}

int RowQuery::Next() {
    if (statement_ == nullptr) {
        return -1;
    }
    const int code = sqlite3_step(statement_.get());
    if (code == SQLITE_ROW) {
        return 1;
    }
    if (code == SQLITE_DONE) {
        return 0;
    }
    SERVERLOG_ERROR_LINE("sqlite3_step: [%d] %s\n", code, sqlite3_errmsg(handler_.getDB()));
    logger_.HandleDBError(handler_, code);
    statement_.reset();
    return -1;
}

int RowQuery::Number(int column) const {
    return sqlite3_column_int(statement_.get(), column);
}

std::string RowQuery::Text(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
    return text == nullptr ? std::string() : std::string(text);
}

}  // namespace statistic_log
