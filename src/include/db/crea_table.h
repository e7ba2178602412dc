#pragma once

#include <mailserver-log/export.h>
#include <merodbquery/insert_query.h>
#include <merodbquery/session.h>

#include <memory>
#include <string>
#include <vector>

namespace serverlog::db {

namespace internal {

/// "(a, b) ": the names of an insert's columns.
MAILSERVER_LOG_EXPORT std::string fields_to_str(const std::vector<std::string>& fields);

/// " VALUES(:a, :b) ": the named placeholders of an insert's columns.
MAILSERVER_LOG_EXPORT std::string fields_to_values_str(std::vector<std::string> fields);

}  // namespace internal

/// The write side of a log table of records T. The library holds it for its three records.
template <class T>
class MAILSERVER_LOG_EXPORT CreaTable {
 public:
    /// @param session  copied, and so need not outlive this object
    CreaTable(merodbquery::Session& session, std::string table);
    virtual ~CreaTable() = default;

    /// Inserts one row. False if the statement failed, for LastError() to tell why; SQLite then
    /// left the table as it was.
    virtual bool Create(const T& record);

    /// Why the last Create gave false, in the words of SQLite or SOCI; empty when it did not.
    const std::string& LastError() const { return insert_.ErrorText(); }

 private:
    // Bound to the insert once and given the values of each record: copying them takes a twentieth
    // of the time that binding the record itself takes. Stays in its place when the table is moved.
    std::unique_ptr<T> row_;
    merodbquery::InsertQuery insert_;
};

}  // namespace serverlog::db
