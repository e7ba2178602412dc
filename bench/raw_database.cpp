#include "raw_database.h"

#include <stdexcept>

#include "merodbquery/substring_function.h"
#include "stores.h"

namespace bench {

namespace {

void Take(sqlite3_stmt* statement, int column, std::string& text) {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    text.assign(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
}

void Give(sqlite3_stmt* statement, int parameter, const std::string& text) {
    sqlite3_bind_text(statement, parameter, text.data(), static_cast<int>(text.size()),
                      SQLITE_STATIC);
}

[[noreturn]] void Fail(sqlite3* handle) {
    throw std::runtime_error(sqlite3_errmsg(handle));
}

}  // namespace

RawStatement::RawStatement(sqlite3* handle, const std::string& text) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(handle, text.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        Fail(handle);
    }
    statement_.reset(statement);
}

bool RawStatement::Step() {
    const int result = sqlite3_step(statement_.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE) {
        Fail(sqlite3_db_handle(statement_.get()));
    }
    return result == SQLITE_ROW;
}

void RawStatement::Read(RawMail& mail) {
    sqlite3_stmt* row = statement_.get();
    mail.date = sqlite3_column_int(row, 0);
    mail.size = sqlite3_column_int(row, 1);
    mail.status = sqlite3_column_int(row, 2);
    int column = 3;
    for (std::string* text : {&mail.host, &mail.mail_from, &mail.mail_to, &mail.message_id,
                              &mail.ori_mail_to, &mail.queue_id, &mail.subject}) {
        Take(row, column++, *text);
    }
}

void RawStatement::Bind(const RawMail& mail) {
    sqlite3_stmt* insert = statement_.get();
    sqlite3_bind_int(insert, 1, mail.date);
    sqlite3_bind_int(insert, 2, mail.size);
    sqlite3_bind_int(insert, 3, mail.status);
    int parameter = 4;
    for (const std::string* text : {&mail.host, &mail.mail_from, &mail.mail_to, &mail.message_id,
                                    &mail.ori_mail_to, &mail.queue_id, &mail.subject}) {
        Give(insert, parameter++, *text);
    }
}

long RawStatement::StepThroughTexts() {
    long rows = 0;
    const int columns = sqlite3_column_count(statement_.get());
    for (; Step(); ++rows) {
        for (int column = 0; column < columns; ++column) {
            if (sqlite3_column_text(statement_.get(), column) == nullptr) {
                throw std::runtime_error("a NULL among the generated rows");
            }
        }
    }
    return rows;
}

RawDatabase::RawDatabase(const std::string& path) {
    sqlite3* handle = nullptr;
    const int result = sqlite3_open(path.c_str(), &handle);
    handle_.reset(handle);
    if (result != SQLITE_OK || !merodbquery::RegisterSubstringFunction(handle)) {
        Fail(handle);
    }
}

void RawDatabase::Run(const std::string& script) {
    if (sqlite3_exec(handle_.get(), script.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        Fail(handle_.get());
    }
}

long RawDatabase::Number(const std::string& select) {
    RawStatement statement = Prepare(select);
    statement.Step();
    return static_cast<long>(sqlite3_column_int64(statement.Get(), 0));
}

std::vector<RawMail> RawDatabase::Rows(const std::string& select) {
    RawStatement statement = Prepare(select);
    std::vector<RawMail> rows;
    while (statement.Step()) {
        statement.Read(rows.emplace_back());
    }
    return rows;
}

RawDatabase OpenBothFiles() {
    RawDatabase files(kCurrentPath);
    files.Run("ATTACH '" + kLongTermPath + "' AS DB1");
    return files;
}

}  // namespace bench
