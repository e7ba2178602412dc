#include "log/adminlog/tabs/loglist/log_list.h"

#include "log/adminlog/tabs/loglist/templates.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/list_rows.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog::loglist {

namespace {

constexpr Word kSources[] = {
    {"general", Label{"maillog", "main_log"}},
    {"forward", Label{"maillog", "received_log"}},
};

constexpr Word kTypes[] = {
    {"admin_log", Label{"maillog", "admin_log"}},
    {"mail_log", Label{"maillog", "mail_log"}},
    {"security_log", Label{"maillog", "security_log"}},
    {"postfix_log", Label{"maillog", "export_postfix_log"}},
};

/// One row for each file of the request: `first`, kind, file.
StatementRows FileRows(std::string const& first, Json::Value const& params) {
    std::string const type = WordText(GetKeyVal(params, "log_type"), kTypes);
    return EntryRows(params["file_list"], [&first, &type](Json::Value const& file) {
        return StatementRow{first, type, file.asString()};
    });
}

}  // namespace

StatementRows TranslateLogOperation(std::string const& statement, Json::Value const& /*old_info*/,
                                    Json::Value const& params, Json::Value const& /*diff*/,
                                    Json::Value const& /*body*/) {
    if (statement != kLogDeleted && statement != kLogDownloaded) {
        return Ignore();
    }
    return FileRows(WordText(GetKeyVal(params, "log_src"), kSources), params);
}

StatementRows TranslateGenerateLogDb(std::string const& statement, Json::Value const& /*old_info*/,
                                     Json::Value const& params, Json::Value const& /*diff*/,
                                     Json::Value const& /*body*/) {
    if (statement != kLogDbGenerated) {
        return Ignore();
    }
    return FileRows(LabelText(Label{"maillog", "generate_log_db"}), params);
}

}  // namespace serverlog::log::adminlog::loglist
