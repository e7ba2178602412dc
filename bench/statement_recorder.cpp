#include "statement_recorder.h"

#include <sqlite3.h>

#include <map>
#include <memory>
#include <regex>
#include <set>
#include <utility>

#include "raw_database.h"

namespace bench {

namespace {

// SQLite offers its hook a place to keep something for each connection, but none for the function
// that installs it.
std::vector<RecordedStatement> recorded;

int Record(unsigned event, void* connection, void* subject, void* text) {
    auto* handle = static_cast<sqlite3*>(connection);
    if (event == SQLITE_TRACE_CLOSE) {
        recorded.push_back({handle, "", ""});
        return 0;
    }
    if (static_cast<const char*>(text)[0] == '-') {
        return 0;  // a statement within a trigger
    }
    const std::unique_ptr<char, void (*)(void*)> expanded(
        sqlite3_expanded_sql(static_cast<sqlite3_stmt*>(subject)), sqlite3_free);
    recorded.push_back({handle, sqlite3_db_filename(handle, "main"), expanded.get()});
    return 0;
}

int Install(sqlite3* connection, char** /*error*/, const sqlite3_api_routines* /*routines*/) {
    return sqlite3_trace_v2(connection, SQLITE_TRACE_STMT | SQLITE_TRACE_CLOSE, Record, connection);
}

void (*const kHook)() = reinterpret_cast<void (*)()>(Install);

/// The connections of a list of statements that is run again.
class Connections {
 public:
    /// The connection that a statement wants; null if the statement is that it was closed.
    RawDatabase* Of(const RecordedStatement& statement) {
        if (statement.text.empty()) {
            open_.erase(statement.connection);
            return nullptr;
        }
        auto& connection = open_[statement.connection];
        if (!connection) {
            connection = std::make_unique<RawDatabase>(statement.file);
        }
        return connection.get();
    }

 private:
    std::map<const void*, std::unique_ptr<RawDatabase>> open_;
};

// Reads what a statement gives, and keeps none of it.
void Run(RawDatabase& connection, const std::string& text) {
    RawStatement statement = connection.Prepare(text);
    const int columns = sqlite3_column_count(statement.Get());
    while (statement.Step()) {
        for (int column = 0; column < columns; ++column) {
            sqlite3_column_text(statement.Get(), column);
        }
    }
}

bool ReadsLog(const std::string& statement) {
    return statement.find("log_table") != std::string::npos &&
           statement.find("CREATE") == std::string::npos;
}

std::string PlanOf(RawDatabase& connection, const std::string& statement) {
    RawStatement explain = connection.Prepare("EXPLAIN QUERY PLAN " + statement);
    std::string plan;
    while (explain.Step()) {
        const auto* step = reinterpret_cast<const char*>(sqlite3_column_text(explain.Get(), 3));
        plan += (plan.empty() ? "" : "; ") + std::string(step);
    }
    return plan;
}

}  // namespace

StatementRecorder::StatementRecorder() {
    recorded.clear();
    sqlite3_auto_extension(kHook);
}

StatementRecorder::~StatementRecorder() {
    sqlite3_cancel_auto_extension(kHook);
}

std::vector<RecordedStatement> StatementRecorder::Take() {
    return std::exchange(recorded, {});
}

void RunAgain(const std::vector<RecordedStatement>& statements) {
    Connections connections;
    for (const RecordedStatement& statement : statements) {
        if (RawDatabase* connection = connections.Of(statement)) {
            Run(*connection, statement.text);
        }
    }
}

std::vector<std::string> PlansOf(const std::vector<RecordedStatement>& statements) {
    const std::regex numbers("\\b\\d+\\b");
    Connections connections;
    std::set<std::string> seen;
    std::vector<std::string> plans;
    for (const RecordedStatement& statement : statements) {
        RawDatabase* connection = connections.Of(statement);
        if (connection == nullptr) {
            continue;
        }
        const std::string form = std::regex_replace(statement.text, numbers, "N");
        if (ReadsLog(statement.text) && seen.insert(form).second) {
            plans.push_back(form + ": " + PlanOf(*connection, statement.text));
        }
        Run(*connection, statement.text);
    }
    return plans;
}

}  // namespace bench
