#include "mailserver/db_handler.h"

#include <fcntl.h>
#include <sqlite3.h>

#include <cstdlib>

#include "common/file_descriptor.h"

namespace {

constexpr int kFirstBusyTimeout = 60 * 1000;

// SQLite takes an empty file for a database without tables.
bool MakeEmptyFile(const std::string& path) {
    constexpr int kFlags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
    return static_cast<bool>(platform::FileDescriptor(open(path.c_str(), kFlags, 0644)));
}

int KeepNumber(void* number, int /*columns*/, char** texts, char** /*names*/) {
    *static_cast<long*>(number) = std::strtol(texts[0], nullptr, 10);
    return 0;
}

}  // namespace

DBHandler::DBHandler(const std::string& path, const std::string& create_script)
    : path_(path), create_script_(create_script), busy_timeout_(kFirstBusyTimeout) {}

DBHandler::~DBHandler() {
    sqlite3_close_v2(connection_);
}

int DBHandler::connect() {
    if (connection_ != nullptr) {
        return error_code_ = SQLITE_OK;
    }
    error_code_ = Open();
    if (error_code_ == SQLITE_CANTOPEN && MakeEmptyFile(path_)) {
        error_code_ = Open();
    }
    if (error_code_ == SQLITE_OK) {
        error_code_ = CreateMissingTables();
    }
    if (error_code_ != SQLITE_OK) {
        sqlite3_close(connection_);
        connection_ = nullptr;
    }
    return error_code_;
}

int DBHandler::disconnect() {
    error_code_ = sqlite3_close(connection_);
    if (error_code_ == SQLITE_OK) {
        connection_ = nullptr;
    }
    return error_code_;
}

void DBHandler::setBusyTimeout(int milliseconds) {
    busy_timeout_ = milliseconds;
    if (connection_ != nullptr) {
        sqlite3_busy_timeout(connection_, busy_timeout_);
    }
}

int DBHandler::ExecCmd(const std::string& statement) {
    return error_code_ = Run(statement);
}

int DBHandler::exeCmds(const SQLCmd& commands, bool in_transaction) {
    return error_code_ = in_transaction ? RunInTransaction(commands) : RunAll(commands);
}

// SQLITE_OPEN_CREATE would hold for ATTACH too, and a file that is missing there would appear,
// empty, in place of an error.
int DBHandler::Open() {
    const int code = sqlite3_open_v2(path_.c_str(), &connection_, SQLITE_OPEN_READWRITE, nullptr);
    if (code != SQLITE_OK) {
        sqlite3_close(connection_);
        connection_ = nullptr;
        return code;
    }
    return sqlite3_busy_timeout(connection_, busy_timeout_);
}

// Looks for tables and not at the size: what made the file may have broken off behind the PRAGMA of
// a script, which already writes to it.
int DBHandler::CreateMissingTables() {
    long version = 0;
    const int code =
        sqlite3_exec(connection_, "PRAGMA schema_version;", KeepNumber, &version, nullptr);
    return code == SQLITE_OK && version == 0 ? Run(create_script_) : code;
}

int DBHandler::Run(const std::string& statements) {
    if (connection_ == nullptr) {
        return error_code_ == SQLITE_OK ? SQLITE_MISUSE : error_code_;
    }
    return sqlite3_exec(connection_, statements.c_str(), nullptr, nullptr, nullptr);
}

int DBHandler::RunAll(const SQLCmd& commands) {
    for (const std::string& statement : commands.statements()) {
        const int code = Run(statement);
        if (code != SQLITE_OK) {
            return code;
        }
    }
    return SQLITE_OK;
}

// The transaction takes its locks with the first statement that needs them: one that took them at
// once would take them on every attached file as well.
int DBHandler::RunInTransaction(const SQLCmd& commands) {
    int code = Run("BEGIN TRANSACTION;");
    if (code != SQLITE_OK) {
        return code;
    }
    code = RunAll(commands);
    if (code == SQLITE_OK) {
        code = Run("COMMIT TRANSACTION;");
    }
    if (code != SQLITE_OK && sqlite3_get_autocommit(connection_) == 0) {
        Run("ROLLBACK TRANSACTION;");
    }
    return code;
}
