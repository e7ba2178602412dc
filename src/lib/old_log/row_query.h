#pragma once

#include <mailserver-log/old_log/maillogger.h>

#include <memory>
#include <string>

struct sqlite3_stmt;

namespace statistic_log {

/// A statement that reads rows, with the engine's error lines. The connection must stay open as
/// long as it lives.
class RowQuery {
 public:
    /// Prepares the statement. A failure is told by Next().
    ///
    /// @param logger   told of errors
    /// @param handler  connected
    RowQuery(MailLogger& logger, DBHandler& handler, const std::string& text);

    /// Steps to the next row.
    ///
    /// @return 1 at a row, 0 behind the last one, -1 when the statement failed, here or before
    int Next();

    /// A cell of the row as a number of 32 bits; 0 for NULL.
    int Number(int column) const;

    /// A cell of the row as text; empty for NULL.
    std::string Text(int column) const;

 private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };

    MailLogger& logger_;
    DBHandler& handler_;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

}  // namespace statistic_log
