#include "stores/statement.h"

#include <stdexcept>

namespace serverlog::program {

void Statement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

Statement::Statement(sqlite3* handle, const std::string& sql) : handle_(handle) {
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v2(handle, sql.c_str(), -1, &statement, nullptr);
    statement_.reset(statement);
    Check(result);
}

Statement& Statement::Bind(int parameter, std::int64_t value) {
    Check(sqlite3_bind_int64(statement_.get(), parameter, value));
    return *this;
}

Statement& Statement::Bind(int parameter, std::string_view text) {
    // A text without data would be NULL.
    Check(sqlite3_bind_text64(statement_.get(), parameter, text.empty() ? "" : text.data(),
                              text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
    return *this;
}

bool Statement::Next() {
    const int result = sqlite3_step(statement_.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE) {
        const std::string reason = sqlite3_errmsg(handle_);
        Reset();
        throw std::runtime_error(reason);
    }
    return result == SQLITE_ROW;
}

void Statement::Run() {
    while (Next()) {
    }
    Reset();
}

void Statement::Reset() {
    // It tells the failure of the run before, which has been told.
    sqlite3_reset(statement_.get());
}

long long Statement::Number(int column) const {
    return sqlite3_column_int64(statement_.get(), column);
}

std::string Statement::Text(int column) const {
    const unsigned char* text = sqlite3_column_text(statement_.get(), column);
    const int size = sqlite3_column_bytes(statement_.get(), column);
    return text == nullptr
               ? std::string()
               : std::string(reinterpret_cast<const char*>(text), static_cast<std::size_t>(size));
}

bool Statement::IsNull(int column) const {
    return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

void Statement::Check(int result) const {
    if (result != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(handle_));
    }
}

}  // namespace serverlog::program
