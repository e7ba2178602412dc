#pragma once

#include <mailserver-log/export.h>
#include <merodbquery/insert_query.h>
#include <merodbquery/session.h>

#include <string>
#include <utility>
#include <vector>

namespace serverlog::db {

namespace internal {

/// "(a, b) ": the names of an insert's columns.
MAILSERVER_LOG_EXPORT std::string fields_to_str(const std::vector<std::string>& fields);

/// " VALUES(:a, :b) ": the named placeholders of an insert's columns.
MAILSERVER_LOG_EXPORT std::string fields_to_values_str(std::vector<std::string> fields);

}  // namespace internal

/// The write side of a log table of records T.
template <class T>
class MAILSERVER_LOG_EXPORT CreaTable {
 public:
    /// @param session  must outlive this object
    CreaTable(merodbquery::Session& session, std::string table)
        : table_(std::move(table)), session_(session) {}
    virtual ~CreaTable() = default;

    /// Inserts one row. False if the statement failed; SQLite then left the table as it was.
    virtual bool Create(const T& record);

 private:
    std::string table_;
    merodbquery::Session& session_;
};

template <class T>
bool CreaTable<T>::Create(const T& record) {
    const std::vector<std::string> fields = record.GetInsertFields();
    merodbquery::InsertQuery query(session_, table_);
    query.SetInsertAll(fields);
    query.Bind(soci::use(record));
    return query.Execute();
}

}  // namespace serverlog::db
