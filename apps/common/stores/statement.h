#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace serverlog::program {

/// A prepared statement of SQLite, for one thread. Whatever SQLite refuses throws
/// std::runtime_error with its reason.
class Statement {
 public:
    /// @param handle  must outlive this object
    Statement(sqlite3* handle, const std::string& sql);

    /// Binds a value to a parameter, counted from 1. Texts are copied.
    Statement& Bind(int parameter, std::int64_t value);
    Statement& Bind(int parameter, std::string_view text);

    /// Goes to the next row of the result; false if there is none.
    bool Next();

    /// Runs it to its end, and makes it ready to be run again.
    void Run();

    /// Makes it ready to be run again. What was bound stays.
    void Reset();

    /// A value of the row, counted from 0. NULL is 0 or an empty text.
    long long Number(int column) const;
    std::string Text(int column) const;
    bool IsNull(int column) const;

 private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };

    void Check(int result) const;

    sqlite3* handle_;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

}  // namespace serverlog::program
