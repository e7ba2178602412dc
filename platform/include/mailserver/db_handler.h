#pragma once

#include <mailserver/sql_cmd.h>

#include <string>

struct sqlite3;

/// One SQLite file, to be opened and closed again and again, with the script that makes it.
///
/// Results are those of SQLite (https://www.sqlite.org/rescode.html), the primary codes: 0 is done,
/// 5 a file that stays busy, 11 a corrupt one. Nothing here throws or writes to a log.
///
/// One thread uses it at a time.
class DBHandler {
 public:
    /// Opens nothing yet.
    ///
    /// @param path           the file
    /// @param create_script  any number of statements that make the tables of a new file
    DBHandler(const std::string& path, const std::string& create_script);

    /// Closes the connection.
    ~DBHandler();
    DBHandler(const DBHandler&) = delete;
    DBHandler& operator=(const DBHandler&) = delete;

    /// Opens the connection, which waits up to 60 s for a busy file. A missing file is made and the
    /// script run on it, also on one that has never had a table. Statements on the connection, such
    /// as ATTACH, make no other file. Does nothing when connected.
    ///
    /// @return 0, or a code; there is then no connection
    int connect();

    /// Closes the connection, and with it what was attached. Does nothing when not connected.
    ///
    /// @return 0; 5 while a prepared statement is left, and the connection then stays open
    int disconnect();

    /// The open connection, owned here and valid up to disconnect(); null when not connected.
    sqlite3* getDB() const { return connection_; }

    /// The path that it was made with.
    const std::string& getDBPath() const { return path_; }

    /// The result of the last call here that runs, opens or closes something.
    int getErrCode() const { return error_code_; }

    /// Sets how long a statement waits for a busy file.
    ///
    /// @param milliseconds  0 does not wait
    void setBusyTimeout(int milliseconds);

    /// Runs a statement and drops the rows that it yields.
    ///
    /// @return 0 or a code: that of the last connect() when it failed, 21 when not connected
    int ExecCmd(const std::string& statement);

    /// Runs statements until one fails.
    ///
    /// @param in_transaction  true runs all of them or none; false lets those stand that ran before
    ///                        one that failed, and takes statements that a transaction cannot hold,
    ///                        such as ATTACH
    /// @return as ExecCmd
    int exeCmds(const SQLCmd& commands, bool in_transaction);

 private:
    int Open();
    int CreateMissingTables();
    int Run(const std::string& statements);
    int RunAll(const SQLCmd& commands);
    int RunInTransaction(const SQLCmd& commands);

    std::string path_;
    std::string create_script_;
    sqlite3* connection_ = nullptr;
    int busy_timeout_;
    int error_code_ = 0;
};
