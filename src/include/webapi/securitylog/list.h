#pragma once

#include <json/value.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/export.h>
#include <mailserver-log/webapi/base_db_query_api.h>

#include <string>
#include <tuple>

namespace serverlog::webapi::securitylog {

/// Lists the security log.
///
/// Parameters beside those of BaseDBQueryAPI, all texts and all optional:
///
/// | key         | filter of an advance search                                          |
/// |-------------|----------------------------------------------------------------------|
/// | `recipient` | the recipient holds it, without regard to letter case                |
/// | `sender`    | the same of the sender                                               |
/// | `src`       | the same of the source address                                       |
/// | `subject`   | the same of the subject                                              |
/// | `type`      | the same of the type: "reject", "spam", "virus", "content", "dnsbl", |
/// |             | "attachment", "blacklist", "spf", "dkim", "dmarc" or "mcp"; any      |
/// |             | other text takes every type                                          |
/// | `lang`      | the language of an export's labels, "enu" by default                 |
/// | `db_path`   | as that of adminlog::List_v1                                         |
///
/// A simple search looks into source address, event, sender, recipient and subject.
///
/// Fields to sort by are "date", "time", "source", "mail_host", "recipient", "sender", "subject"
/// and "type", by default the date.
///
/// The payload holds "total", "offset" as it was asked for, and "log_list", objects of texts:
/// "date" and "time" (local), "event", "mail_host", "recipient", "sender", "source", "subject" and
/// "type", as they are stored.
class MAILSERVER_LOG_EXPORT List : public BaseDBQueryAPI {
 public:
    using BaseDBQueryAPI::BaseDBQueryAPI;

    std::tuple<int, Json::Value> Execute() override;

    /// Does the work of Execute and gives the payload as JSON text without blanks, byte by byte
    /// what a writer of UTF-8 would make of it. Bytes that are no UTF-8 become U+FFFD.
    std::string ExecuteAsText();

    std::tuple<int, Json::Value> ReadAdvanceRequest() override;
    std::tuple<int, Json::Value> ReadAdvanceRequestFromJson() override;
    std::string SortBy(const std::string& sort_by) override;
    ConditionTable SimpleSearch() override;
    ConditionTable AdvanceSearch() override;

 protected:
    /// Number and page of the rows that a list gives.
    using LogRows = Rows<db::SecurityLogDB>;

    /// As ListStore, on the log of the parameter `db_path`.
    LogRows DbList(const std::string& reason);

    /// The payload of a list.
    Json::Value ResponseBuilder(const LogRows& rows) const;

    /// The same as the JSON text that ExecuteAsText gives.
    std::string ResponseText(const LogRows& rows) const;

    ///@{
    /// A parameter of the method, under its own name.
    std::string db_path_ = db::StoreTraits<db::SecurityLogDB>::kPath;
    std::string lang_ = "enu";
    std::string recipient_;
    std::string sender_;
    std::string src_;
    std::string subject_;
    std::string type_;
    ///@}
};

}  // namespace serverlog::webapi::securitylog
