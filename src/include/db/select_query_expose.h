#pragma once

#include <mailserver-log/export.h>
#include <merodbquery/select_query.h>
#include <merodbquery/session.h>

#include <string>

namespace serverlog::db {

/// A select whose statement text can be read, so that it can become a part of a union.
class MAILSERVER_LOG_EXPORT SelectQueryExpose : public merodbquery::SelectQuery {
 public:
    /// @param table  the table, with its schema in front if need be: currDB.admin_log
    SelectQueryExpose(const merodbquery::Session& session, std::string table);

    /// The statement with its placeholders.
    std::string GetQuery() override;
};

}  // namespace serverlog::db
