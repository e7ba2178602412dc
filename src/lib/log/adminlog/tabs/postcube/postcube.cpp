#include "log/adminlog/tabs/postcube/postcube.h"

#include "log/adminlog/tabs/common/fixed_word.h"
#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/tabs/postcube/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog::postcube {

namespace {

constexpr Setting kSettings[] = {
    {Label{"postcube", "enable_pop"}, "enable_pop3", IsEnable},
    {Label{"postcube", "pop_fetch_period"}, "pop3_fetch_period", nullptr},
    {Label{"postcube", "admin_allow_smtp_sender_name"}, "allow_smtp_sender_name", IsEnable},
    {Label{"postcube", "disable_pgp"}, "disable_pgp", IsEnable},
    {Label{"postcube", "enable_sharing_link"}, "enable_sharing_link", IsEnable},
};

constexpr char kIsCustom[] = "is_custom";

constexpr FixedWord kLogoWords[] = {{"false", "removed"}, {"true", "set"}};

/// None also when the two values are one and differ only by type, and for what is no switch.
StatementRows LogoRow(Json::Value const& old_info, Json::Value const& params,
                      Json::Value const& diff) {
    std::string const is_custom = GetKeyVal(params, kIsCustom);
    std::string const word = FixedWordText(is_custom, kLogoWords);
    if (!diff.isMember(kIsCustom) || is_custom == GetKeyVal(old_info, kIsCustom) || word.empty()) {
        return Ignore();
    }
    return {{word}};
}

}  // namespace

Json::Value SettingsInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.PostCube", "get");
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    if (statement == kSettingChanged) {
        return MuggleTranslate(old_info, params, diff, MakeTranslators(kSettings));
    }
    if (statement == kCustomLogo) {
        return LogoRow(old_info, params, diff);
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::postcube
