#include "log/adminlog/tabs/account/account.h"

#include "log/adminlog/tabs/account/templates.h"
#include "log/adminlog/tabs/common/account_name.h"
#include "log/adminlog/tabs/common/limit_text.h"
#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog::account {

namespace {

/// A kind of account: how statements call it, where a request lists it, how one is named.
struct Kind {
    Label label;
    char const* list;
    std::string (*name)(Json::Value const& account);
};

std::string MailboxName(Json::Value const& mailbox) {
    return mailbox.asString();
}

constexpr Kind kUser = {Label{"account", "user"}, "users", UserName};
constexpr Kind kGroup = {Label{"account", "group"}, "groups", GroupName};
constexpr Kind kFormerUser = {Label{"account", "former_user"}, "mailboxes", MailboxName};

constexpr Setting kSystemSettings[] = {
    {Label{"account", "enable_quota"}, "enable_quota", IsEnable},
    {Label{"account", "default_mailbox_quota"}, "quota", SizeLimitText},
    {Label{"account", "enable_remaining_capacity"}, "enable_remaining_capacity", IsEnable},
    {Label{"account", "default_remaining_capacity"}, "remaining_capacity", RemainingCapacityText},
};

/// One row for each account of the request: kind, name, then `values`.
StatementRows AccountRows(Kind const& kind, Json::Value const& params,
                          StatementRow const& values = {}) {
    StatementRows rows;
    for (Json::Value const& account : params[kind.list]) {
        StatementRow row = {LabelText(kind.label), kind.name(account)};
        row.insert(row.end(), values.begin(), values.end());
        rows.push_back(row);
    }
    return rows;
}

StatementRows QuotaRows(Kind const& kind, std::string const& statement, Json::Value const& params) {
    if (statement == kQuotaSet && params.isMember("quota")) {
        return AccountRows(kind, params, {SizeLimitText("quota", params)});
    }
    if (statement == kRemainingCapacitySet && params.isMember("remaining_capacity")) {
        return AccountRows(kind, params, {RemainingCapacityText("remaining_capacity", params)});
    }
    return Ignore();
}

/// The new value of a setting whose old one is not known.
StatementRows FirstValueRow(std::string const& key, FormatSignature* format,
                            Json::Value const& old_info, Json::Value const& params) {
    if (old_info.isMember(key) || !params.isMember(key)) {
        return Ignore();
    }
    return {{format(key, params)}};
}

}  // namespace

Json::Value SystemQuotaInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.MailboxQuota", "get_system_quota");
}

std::string RemainingCapacityText(std::string const& member, Json::Value const& object) {
    return GetKeyVal(object, member) == "0" ? IsBoolEnable(false) : SizeLimitText(member, object);
}

StatementRows TranslateClearUserQuota(std::string const& statement, Json::Value const& /*old_info*/,
                                      Json::Value const& params, Json::Value const& /*diff*/,
                                      Json::Value const& /*body*/) {
    return statement == kQuotaCleared ? AccountRows(kUser, params) : Ignore();
}

StatementRows TranslateClearGroupQuota(std::string const& statement,
                                       Json::Value const& /*old_info*/, Json::Value const& params,
                                       Json::Value const& /*diff*/, Json::Value const& /*body*/) {
    return statement == kQuotaCleared ? AccountRows(kGroup, params) : Ignore();
}

StatementRows TranslateSetUserQuota(std::string const& statement, Json::Value const& /*old_info*/,
                                    Json::Value const& params, Json::Value const& /*diff*/,
                                    Json::Value const& /*body*/) {
    return QuotaRows(kUser, statement, params);
}

StatementRows TranslateSetGroupQuota(std::string const& statement, Json::Value const& /*old_info*/,
                                     Json::Value const& params, Json::Value const& /*diff*/,
                                     Json::Value const& /*body*/) {
    return QuotaRows(kGroup, statement, params);
}

StatementRows TranslateSetSystemQuota(std::string const& statement, Json::Value const& old_info,
                                      Json::Value const& params, Json::Value const& diff,
                                      Json::Value const& /*body*/) {
    if (statement == kSettingChanged) {
        return MuggleTranslate(old_info, params, diff, MakeTranslators(kSystemSettings));
    }
    if (statement == kDefaultQuotaSet) {
        return FirstValueRow("quota", SizeLimitText, old_info, params);
    }
    if (statement == kDefaultRemainingCapacitySet) {
        return FirstValueRow("remaining_capacity", RemainingCapacityText, old_info, params);
    }
    return Ignore();
}

StatementRows TranslateClearMaildir(std::string const& statement, Json::Value const& /*old_info*/,
                                    Json::Value const& params, Json::Value const& /*diff*/,
                                    Json::Value const& /*body*/) {
    return statement == kMailboxCleared ? AccountRows(kUser, params) : Ignore();
}

StatementRows TranslateDeleteNoOwner(std::string const& statement, Json::Value const& /*old_info*/,
                                     Json::Value const& params, Json::Value const& /*diff*/,
                                     Json::Value const& /*body*/) {
    return statement == kMailboxCleared ? AccountRows(kFormerUser, params) : Ignore();
}

}  // namespace serverlog::log::adminlog::account
