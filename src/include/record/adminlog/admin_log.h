#pragma once

#include <json/json.h>
#include <mailserver-log/export.h>
#include <mailserver-log/record/base_record.h>
#include <mailserver-log/record/columns.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace serverlog::record {

/// One statement on what an administrator did: a row of the table admin_log.
class MAILSERVER_LOG_EXPORT AdminLog : public BaseRecord {
 public:
    /// The columns in insert order; see <mailserver-log/record/columns.h>.
    static constexpr auto Columns() {
        return std::make_tuple(
            Column{"tab_type", &AdminLog::tab_type}, Column{"statement", &AdminLog::statement},
            Column{"user", &AdminLog::user}, Column{"uid", &AdminLog::uid},
            Column{"date", &AdminLog::date}, Column{"ip", &AdminLog::ip},
            Column{"server", &AdminLog::server}, Column{"webapi_param", &AdminLog::webapi_param});
    }

    /// How a NULL in a text column is read.
    static constexpr NullText kNullText = NullText::Refused;

    const std::vector<std::string>& GetInsertFields() const override;

    /// A NULL in any column throws soci::soci_error. A parameter text that is no JSON writes an
    /// error line, and the field keeps what the parser left in it.
    void soci_FromBase(const soci::values& values) override;
    void soci_ToBase(soci::values& values, soci::indicator& indicator) const override;

    ///@{
    /// What soci::into and soci::use do with a record. Take the columns from a fetched row, failing
    /// as soci_FromBase does, and give them to a statement; soci::soci_error if that takes one not.
    void ReadFrom(const StatementRow& row);
    void WriteTo(StatementRow& row) const;
    ///@}

    std::int32_t tab_type = 0;  ///< tab of the management page that the operation belongs to
    std::uint64_t uid = 0;      ///< number of the administrator
    std::uint64_t date = 0;     ///< seconds since the epoch
    std::string statement;      ///< what was done, in words
    std::string user;           ///< login name of the administrator
    std::string ip;             ///< where the call came from
    std::string server;         ///< address of the host, in round brackets
    Json::Value webapi_param;   ///< parameters of the call; stored as JSON text
};

/// Compares all columns.
MAILSERVER_LOG_EXPORT bool operator==(const AdminLog& a, const AdminLog& b);

}  // namespace serverlog::record
