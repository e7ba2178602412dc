#include "merodbquery/connection.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <utility>

#include "merodbquery/sqlite_backend.h"
#include "merodbquery/substring_function.h"

namespace merodbquery {
namespace {

constexpr int kBusyTimeoutMilliseconds = 60 * 1000;
constexpr char kInMemory[] = ":memory:";

struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using StatementPointer = std::unique_ptr<sqlite3_stmt, Finalizer>;

// SQLite would take a relative name that begins with "file:" for a URI, and a name that is relative
// to a working folder could not be found again after a change of that folder. Empty when there is
// no path.
std::string AbsolutePath(const std::string& path) {
    if (path == kInMemory || path.find('\0') != std::string::npos) {
        return path == kInMemory ? path : std::string();
    }
    std::error_code error;
    return std::filesystem::absolute(path, error).string();
}

bool IsSymbolicLink(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

bool Exists(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0;
}

bool SchemaHasMoved(sqlite3* handle, const char* schema) {
    int moved = 0;
    if (sqlite3_file_control(handle, schema, SQLITE_FCNTL_HAS_MOVED, &moved) != SQLITE_OK ||
        moved == 0) {
        return false;
    }
    // A folder that the present identity may not look into says nothing about the file.
    return Exists(sqlite3_db_filename(handle, schema)) || errno != EACCES;
}

template <class Action>
void ForEachSchema(sqlite3* handle, Action action) {
    for (int i = 0; const char* schema = sqlite3_db_name(handle, i); ++i) {
        action(schema);
    }
}

StatementPointer Prepare(sqlite3* handle, const std::string& text) {
    sqlite3_stmt* statement = nullptr;
    const char* rest = nullptr;
    if (sqlite3_prepare_v2(handle, text.c_str(), -1, &statement, &rest) != SQLITE_OK) {
        return nullptr;
    }
    StatementPointer first(statement);
    statement = nullptr;
    // A rest of blanks and comments prepares to nothing.
    const bool is_alone = sqlite3_prepare_v2(handle, rest, -1, &statement, nullptr) == SQLITE_OK &&
                          statement == nullptr;
    sqlite3_finalize(statement);
    return is_alone ? std::move(first) : nullptr;
}

bool RunToEnd(sqlite3_stmt* statement) {
    int result = SQLITE_ROW;
    while (result == SQLITE_ROW) {
        result = sqlite3_step(statement);
    }
    return result == SQLITE_DONE;
}

}  // namespace

Connection::Connection(const std::string& path) : path_(AbsolutePath(path)) {
    if (path_.empty()) {
        return;
    }
    through_link_ = IsSymbolicLink(path_);
    if (!OpenHandle(true)) {
        sqlite3_close_v2(std::exchange(handle_, nullptr));
        return;
    }
    OpenOnHandle(session_, handle_);
    state_ = State::kOpen;
}

bool Connection::OpenHandle(bool create) {
    const int flags = SQLITE_OPEN_READWRITE | (create ? SQLITE_OPEN_CREATE : 0);
    if (sqlite3_open_v2(path_.c_str(), &handle_, flags, nullptr) != SQLITE_OK) {
        return false;
    }
    sqlite3_busy_timeout(handle_, kBusyTimeoutMilliseconds);
    return RegisterSubstringFunction(handle_);
}

bool Connection::Usable() {
    if (state_ == State::kLost) {
        Reopen();
    }
    return state_ == State::kOpen;
}

bool Connection::Run(const std::string& statement) {
    FollowFile();
    // A NUL would end the statement for SQLite, so that it runs without its rest.
    if (state_ != State::kOpen || std::strlen(statement.c_str()) != statement.size()) {
        return false;
    }
    const StatementPointer prepared = Prepare(handle_, statement);
    return prepared && RunToEnd(prepared.get());
}

soci::session& Connection::RawSession() {
    FollowFile();
    return session_;
}

KeptStatement& Connection::Kept(const std::string& text) {
    FollowFile();
    const auto found = kept_.find(text);
    if (found != kept_.end()) {
        return found->second;
    }
    soci::statement statement(session_);
    statement.alloc();
    statement.prepare(text);
    return kept_.emplace(text, KeptStatement{statement, nullptr}).first->second;
}

void Connection::FollowFile() {
    CloseFinishedHandles();
    if (state_ == State::kLost || (state_ == State::kOpen && HasMoved())) {
        Reopen();
    }
}

bool Connection::HasMoved() const {
    // A database in memory would be lost in reopening, a transaction be cut in two.
    if (path_ == kInMemory || sqlite3_get_autocommit(handle_) == 0) {
        return false;
    }
    bool moved = false;
    ForEachSchema(handle_,
                  [&](const char* schema) { moved = moved || SchemaHasMoved(handle_, schema); });
    return moved;
}

void Connection::Reopen() {
    if (state_ == State::kOpen) {
        RememberAttached();
    }
    RetireHandle();
    // A link leads to a file of someone else, which is not ours to make.
    const bool opened = OpenHandle(!through_link_);
    // A handle that failed to open goes in as well: what is asked of it fails with the reason.
    ReplaceHandle(session_, handle_);
    state_ = opened ? State::kOpen : State::kLost;
    if (opened) {
        AttachRemembered();
    }
}

void Connection::RetireHandle() {
    kept_.clear();
    if (state_ == State::kOpen) {
        sqlite3_busy_timeout(handle_, 0);
        // SQLite does no checkpoint when it closes a file that has moved, and a log that stays
        // beside the path would be read into the file that is there now.
        ForEachSchema(handle_, [this](const char* schema) {
            if (SchemaHasMoved(handle_, schema)) {
                sqlite3_wal_checkpoint_v2(handle_, schema, SQLITE_CHECKPOINT_TRUNCATE, nullptr,
                                          nullptr);
            }
        });
        // Statements that are not finished may go on reading, but write nothing any more.
        sqlite3_exec(handle_, "PRAGMA query_only = ON", nullptr, nullptr, nullptr);
    }
    retired_.push_back(std::exchange(handle_, nullptr));
    CloseFinishedHandles();
}

void Connection::CloseFinishedHandles() {
    const auto close_if_finished = [](sqlite3* handle) {
        // None at all when there was no memory for one.
        const bool is_finished = handle == nullptr || sqlite3_next_stmt(handle, nullptr) == nullptr;
        return is_finished && sqlite3_close(handle) == SQLITE_OK;
    };
    retired_.erase(std::remove_if(retired_.begin(), retired_.end(), close_if_finished),
                   retired_.end());
}

void Connection::RememberAttached() {
    attached_.clear();
    ForEachSchema(handle_, [this](const char* schema) {
        const char* file = sqlite3_db_filename(handle_, schema);
        const bool is_own = std::strcmp(schema, "main") == 0 || std::strcmp(schema, "temp") == 0;
        if (!is_own && file != nullptr) {
            attached_.push_back({schema, file});
        }
    });
}

void Connection::AttachRemembered() {
    for (const AttachedSchema& schema : attached_) {
        const StatementPointer statement = Prepare(handle_, "ATTACH DATABASE ? AS ?");
        if (!statement || !Exists(schema.file)) {
            continue;
        }
        sqlite3_bind_text(statement.get(), 1, schema.file.c_str(), -1, SQLITE_STATIC);
        sqlite3_bind_text(statement.get(), 2, schema.name.c_str(), -1, SQLITE_STATIC);
        RunToEnd(statement.get());
    }
}

void Connection::Close() {
    kept_.clear();
    if (state_ != State::kClosed) {
        ReplaceHandle(session_, nullptr);
        session_.close();
        retired_.push_back(std::exchange(handle_, nullptr));
        state_ = State::kClosed;
    }
    // Lets queries that still hold a statement take the handle down with them.
    for (sqlite3* handle : retired_) {
        sqlite3_close_v2(handle);
    }
    retired_.clear();
}

}  // namespace merodbquery
