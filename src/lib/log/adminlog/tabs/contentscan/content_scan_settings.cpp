#include "log/adminlog/tabs/contentscan/content_scan_settings.h"

#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/tabs/contentscan/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/settings_page.h"

namespace serverlog::log::adminlog::contentscan {

namespace {

constexpr char kSection[] = "content_scan";

constexpr Word kTagActions[] = {
    {"yes", Label{"security", "allow"}},
    {"no", Label{"security", "not_allow"}},
    {"disarm", Label{"security", "disarm"}},
};

constexpr Setting kSettings[] = {
    // The text files spell this key so.
    {Label{"security", "enable_danagerous_content_scan"}, "enable", IsEnable},
    {Label{"security", "reject_partial_message"}, "reject_partial_message", IsEnable},
    {Label{"security", "reject_external_message"}, "reject_external_message_bodies", IsEnable},
    {Label{"security", "find_phishing"}, "find_phishing_fraud", IsEnable},
    {Label{"security", "convert_html_to_text"}, "convert_html_to_text", IsEnable},
    {Label{"security", "iframe_tags"}, "iframe_tag_action", TagText},
    {Label{"security", "form_tag"}, "form_tag_action", TagText},
    {Label{"security", "script_tag"}, "script_tag_action", TagText},
    {Label{"security", "webbugs"}, "webbug_action", TagText},
    {Label{"security", "object_codebase_tag"}, "object_tag_action", TagText},
};

}  // namespace

Json::Value ContentScanInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.Security", "get_contentscan");
}

Json::Value DiffContentScan(Json::Value& old_info, Json::Value& params) {
    return DiffSection(old_info, kSection, params);
}

std::string TagText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kTagActions);
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

}  // namespace serverlog::log::adminlog::contentscan
