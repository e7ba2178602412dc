#pragma once

#include <json/value.h>
#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/export.h>
#include <mailserver-log/webapi/base_db_query_api.h>

#include <string>
#include <tuple>

namespace serverlog::webapi::adminlog {

/// Lists the admin log.
///
/// Parameters beside those of BaseDBQueryAPI, all texts and all optional:
///
/// | key         | filter of an advance search                                          |
/// |-------------|----------------------------------------------------------------------|
/// | `ip`        | the address holds it, without regard to letter case                  |
/// | `server`    | the same of the server's name                                        |
/// | `statement` | the same of the statement                                            |
/// | `tab_type`  | the number of the tab                                                |
/// | `user`      | the user, exactly                                                    |
/// | `lang`      | changes nothing: titles are those of "enu"                           |
/// | `db_path`   | another store to read, such as an archive, alone; the store in use   |
/// |             | is read with its long-term file only where the path is not given     |
///
/// A simple search looks into statement, user, ip and server, and finds the rows of the tab whose
/// title holds the text. A text that two titles hold finds no row by its tab: clients must send
/// enough of a title to name one.
///
/// Fields to sort by are "date", "tab_type", "user", "ip" and "server", by default the date.
///
/// The payload holds "total", "offset" as it was asked for, and "log_list", objects of "tab_type",
/// "statement", "user", "date" (local, as "2026-11-22 10:00:00"), "ip" and "server".
class MAILSERVER_LOG_EXPORT List_v1 : public BaseDBQueryAPI {
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

    /// Reads the texts and tab titles of the product in the language of the object. Where the
    /// product's or the system's folder of texts is missing nothing changes.
    void SetLocalizedString();

    /// Gives the tab titles for a search: an object from tab numbers, such as "21", to texts. The
    /// JSON form has none but these.
    void SetTestString(const Json::Value& titles);

 protected:
    /// Number and page of the rows that a list gives.
    using LogRows = Rows<db::AdminLogDB>;

    /// As ListStore, on the log of the parameter `db_path`.
    LogRows DbList(const std::string& reason);

    /// The payload of a list.
    Json::Value ResponseBuilder(const LogRows& rows) const;

    /// The same as the JSON text that ExecuteAsText gives.
    std::string ResponseText(const LogRows& rows) const;

    /// The condition on the tab whose title has the text of a simple search. Where two tabs have
    /// it no row fulfils the condition; where none has it there is no condition.
    merodbquery::Condition TitleCondition() const;

    ///@{
    /// A parameter of the method, under its own name.
    std::string ip_;
    std::string lang_ = "enu";
    std::string server_;
    std::string statement_;
    std::string tab_type_;
    std::string user_;
    std::string db_path_ = db::StoreTraits<db::AdminLogDB>::kPath;
    ///@}

    Json::Value tab_titles_;  ///< from the number of a tab, as text, to its title
    Json::Value texts_;       ///< the product's texts, of which the titles are a part
};

}  // namespace serverlog::webapi::adminlog
