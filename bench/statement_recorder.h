#pragma once

#include <string>
#include <vector>

namespace bench {

/// A statement that ran in this process, with its values.
struct RecordedStatement {
    const void*
        connection;    ///< names the connection; it may be gone, and a later one have its name
    std::string file;  ///< what the connection has open as "main"
    std::string text;  ///< empty: the connection was closed
};

/// Records the statements of all connections to SQLite that are opened during its life, in order.
/// One at a time, and one thread.
class StatementRecorder {
 public:
    StatementRecorder();
    ~StatementRecorder();
    StatementRecorder(const StatementRecorder&) = delete;
    StatementRecorder& operator=(const StatementRecorder&) = delete;

    std::vector<RecordedStatement> Take();
};

/// Runs recorded statements on connections of its own, as a program without this library would, and
/// reads all their rows. Throws std::runtime_error with SQLite's reason.
void RunAgain(const std::vector<RecordedStatement>& statements);

/// How SQLite goes about each recorded statement that reads a log, "statement: plan", without those
/// that differ in nothing but numbers.
std::vector<std::string> PlansOf(const std::vector<RecordedStatement>& statements);

}  // namespace bench
