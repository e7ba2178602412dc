#pragma once

#include <string>
#include <vector>

/// A list of SQL statements for DBHandler::exeCmds, which runs them in this order.
///
/// One thread uses it at a time.
class SQLCmd {
 public:
    /// Adds a statement, which is copied.
    ///
    /// @param statement  one statement of any length
    SQLCmd& operator+=(const char* statement);

    /// Adds the statements of another list behind these.
    SQLCmd& operator+=(const SQLCmd& other);

    /// The statements.
    const std::vector<std::string>& statements() const { return statements_; }

 private:
    std::vector<std::string> statements_;
};
