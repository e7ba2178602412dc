#pragma once

#include <sqlite3.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace test {

/// Keeps an SQLite file from being written, and read, for as long as this object lives.
class StoreLock {
 public:
    /// @param path  must exist
    explicit StoreLock(const std::string& path) {
        sqlite3* handle = nullptr;
        const int result = sqlite3_open(path.c_str(), &handle);
        handle_.reset(handle);
        if (result != SQLITE_OK ||
            sqlite3_exec(handle, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr) != SQLITE_OK) {
            throw std::runtime_error("cannot lock " + path);
        }
    }

 private:
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };

    std::unique_ptr<sqlite3, Close> handle_;
};

}  // namespace test
