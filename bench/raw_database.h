#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

namespace bench {

/// A mail log row as a program without this library would keep it.
struct RawMail {
    int date = 0;
    int size = 0;
    int status = 0;
    std::string host;
    std::string mail_from;
    std::string mail_to;
    std::string message_id;
    std::string ori_mail_to;
    std::string queue_id;
    std::string subject;
};

/// The columns of RawMail, in its order.
inline constexpr char kRawColumns[] =
    "date, size, status, host, mail_from, mail_to, message_id, ori_mail_to, queue_id, subject";

/// A statement of the C interface of SQLite: what all else is measured by. Everything throws
/// std::runtime_error with SQLite's reason.
class RawStatement {
 public:
    RawStatement(sqlite3* handle, const std::string& text);

    /// True as long as there is a row.
    bool Step();
    void Reset() { sqlite3_reset(statement_.get()); }
    sqlite3_stmt* Get() { return statement_.get(); }

    /// Takes over the present row of a select of kRawColumns.
    void Read(RawMail& mail);

    /// Binds the values of an insert of kRawColumns; `mail` must stay until the next step is done.
    void Bind(const RawMail& mail);

    /// Reads all rows as texts, without keeping them, and gives their number.
    long StepThroughTexts();

 private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
};

/// A connection of the C interface, with the function that a text search uses.
class RawDatabase {
 public:
    explicit RawDatabase(const std::string& path);

    /// Runs a script.
    void Run(const std::string& script);

    RawStatement Prepare(const std::string& text) { return {handle_.get(), text}; }

    /// The one number that a select gives.
    long Number(const std::string& select);

    /// The rows of a select of kRawColumns.
    std::vector<RawMail> Rows(const std::string& select);

 private:
    struct Closer {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };

    std::unique_ptr<sqlite3, Closer> handle_;
};

/// The store's current file with the long-term file attached as DB1.
RawDatabase OpenBothFiles();

}  // namespace bench
