#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

struct sqlite3;

namespace serverlog::program {

/// An SQLite file that is only looked at: nothing is created or changed, neither the file nor one
/// beside it. Of a file in WAL mode that no process has open the log is not read, since that would
/// take a file beside it.
///
/// What can't be read throws std::runtime_error with SQLite's reason. A file that is busy is waited
/// for for some seconds.
class ReadOnlyDatabase {
 public:
    explicit ReadOnlyDatabase(const std::string& path);

    /// The first value of a query; nothing when it has no row or the value is NULL.
    std::optional<long long> Number(const std::string& query) const;

    /// The first value of each row of a query.
    std::vector<std::string> Texts(const std::string& query) const;

 private:
    struct Close {
        void operator()(sqlite3* handle) const;
    };

    std::unique_ptr<sqlite3, Close> handle_;
};

}  // namespace serverlog::program
