#include "log/adminlog/tabs/smtpdelivery/smtp_delivery.h"

#include "log/adminlog/tabs/common/edited_list.h"
#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/tabs/smtpdelivery/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/settings_page.h"

namespace serverlog::log::adminlog::smtpdelivery {

namespace {

constexpr Setting kDelivery[] = {{Label{"relay", "desp_delivery_choosen"}, "host_type", nullptr}};

constexpr Setting kRelayHost[] = {
    {Label{"relay", "relay_server"}, "server", nullptr},
    {Label{"relay", "relay_port"}, "port", nullptr},
    {Label{"relay", "enable_tls"}, "security_connection", IsEnable},
    {Label{"relay", "auth_enable"}, "enable_auth", IsEnable},
    {Label{"relay", "auth_account"}, "auth_name", nullptr},
};

constexpr Setting kRelayHostSecrets[] = {{Label{"relay", "auth_passwd"}, "auth_password", nullptr}};

constexpr Word kRuleLists[] = {
    {"recipient", Label{"relay", "recipient_rule"}},
    {"sender", Label{"relay", "sender_rule"}},
};

}  // namespace

Json::Value DeliveryInfo(Json::Value const& /*params*/) {
    Json::Value info = LoadOldState("MERO.PostCubeServer.SMTP.Delivery", "get_type");
    if (info.isObject() && !info.isMember("auth_password")) {
        info["auth_password"] = "";
    }
    return info;
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    if (statement == kSettingChanged) {
        return MuggleTranslate(old_info, params, diff, MakeTranslators(kDelivery));
    }
    if (statement == kRelayHostChanged) {
        return MuggleTranslate(old_info, params, diff, MakeTranslators(kRelayHost));
    }
    if (statement == kRelayHostSecretChanged) {
        return ChangedLabels(old_info, params, diff, MakeTranslators(kRelayHostSecrets));
    }
    return Ignore();
}

StatementRows TranslateDeliveryServerEdit(std::string const& statement,
                                          Json::Value const& /*old_info*/,
                                          Json::Value const& params, Json::Value const& /*diff*/,
                                          Json::Value const& /*body*/) {
    return statement == kRelayServersEdited ? EditedListRow(params, kRuleLists) : Ignore();
}

}  // namespace serverlog::log::adminlog::smtpdelivery
