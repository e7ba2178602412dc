#include "log/adminlog/tabs/authentication/authentication_settings.h"

#include "log/adminlog/tabs/authentication/templates.h"
#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/settings_page.h"

namespace serverlog::log::adminlog::authentication {

namespace {

constexpr char kSection[] = "authentication";

constexpr Setting kSettings[] = {
    {Label{"security", "enable_spf_check"}, "enable_spf", IsEnable},
    {Label{"security", "reject_spf_soft_fail"}, "reject_spf_soft_fail", IsEnable},
    {Label{"security", "enable_dkim_verification"}, "enable_dkim", IsEnable},
    {Label{"security", "dkim_key_min_length"}, "dkim_key_min_length", nullptr},
    {Label{"security", "enable_dmarc"}, "enable_dmarc", IsEnable},
};

}  // namespace

Json::Value AuthInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.Security", "get_authentication");
}

Json::Value DiffAuth(Json::Value& old_info, Json::Value& params) {
    return DiffSection(old_info, kSection, params);
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    if (statement != kSettingChanged) {
        return Ignore();
    }
    return MuggleTranslate(GetObjectVal(old_info, kSection), params, diff,
                           MakeTranslators(kSettings));
}

}  // namespace serverlog::log::adminlog::authentication
