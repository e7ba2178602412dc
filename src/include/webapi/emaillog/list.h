#pragma once

#include <json/value.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/export.h>
#include <mailserver-log/webapi/base_db_query_api.h>

#include <string>
#include <tuple>

namespace serverlog::webapi::emaillog {

/// Lists the mail log.
///
/// Parameters beside those of BaseDBQueryAPI, all optional, as filters of an advance search:
///
/// | key           | type   | filter                                                        |
/// |---------------|--------|---------------------------------------------------------------|
/// | `mail_from`   | text   | the sender holds it, without regard to letter case            |
/// | `mail_to`     | text   | the same of the recipient; without effect beside `mail_from`, |
/// |               |        | so clients must send one of the two                           |
/// | `ori_mail_to` | text   | the same of the original recipient                            |
/// | `message_id`  | text   | the same of the message id                                    |
/// | `subject`     | text   | the same of the subject                                       |
/// | `size_from`   | number | at least so many bytes; negative for none                     |
/// | `size_to`     | number | fewer bytes than this; negative for none                      |
/// | `status`      | text   | "send", "receive", "bounce", "resend"; "internal_mail" for    |
/// |               |        | received mail from a domain of this server; "any" for all.    |
/// |               |        | Any other text, also none, means "any" and is logged as an    |
/// |               |        | error each time, so clients must send "any"                   |
/// | `db_path`     | text   | as that of adminlog::List_v1                                  |
///
/// A simple search looks into the first five of these. Both take mail addresses in punycode form
/// too.
///
/// Fields to sort by are those of the payload, "date" by default.
///
/// The payload holds "total", "offset" as it was asked for, and "log_list", objects of texts:
/// "mail_from", "mail_to", "message_id", "ori_mail_to" ("-" for none), "date" and "time" (local),
/// "mail_size" (such as "1.5KB"), "mail_status" (StatusInt2Str), "subject", "mail_host".
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

    /// The word that clients know for a status number; "unknow", spelt so on purpose, for a number
    /// without one.
    static std::string StatusInt2Str(int status);

 protected:
    /// Number and page of the rows that a list gives.
    using LogRows = Rows<db::MailLogDB>;

    /// As ListStore, on the log of the parameter `db_path`.
    LogRows DbList(const std::string& reason);

    /// The payload of a list.
    Json::Value ResponseBuilder(const LogRows& rows) const;

    /// The same as the JSON text that ExecuteAsText gives.
    std::string ResponseText(const LogRows& rows) const;

    /// The condition that the parameter `status` makes.
    merodbquery::Condition StatusCondition() const;

    /// The condition that `size_from` and `size_to` make: not below the one, below the other.
    merodbquery::Condition SizeCondition() const;

    ///@{
    /// A parameter of the method, under its own name.
    int size_from_ = -1;
    int size_to_ = -1;
    std::string db_path_ = db::StoreTraits<db::MailLogDB>::kPath;
    std::string mail_from_;
    std::string mail_to_;
    std::string message_id_;
    std::string ori_mail_to_;
    std::string status_;
    std::string subject_;
    std::string lang_ = "enu";
    ///@}
};

}  // namespace serverlog::webapi::emaillog
