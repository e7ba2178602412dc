#include "log/adminlog/tabs/antivirus/antivirus_settings.h"

#include "log/adminlog/tabs/antivirus/templates.h"
#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/settings_page.h"
#include "log/adminlog/toolkit/time_text.h"

namespace serverlog::log::adminlog::antivirus {

namespace {

constexpr char kApi[] = "MERO.PostCubeServer.Security";
constexpr char kSection[] = "anti_virus";
constexpr char kHour[] = "hour";
constexpr char kMinute[] = "minute";

constexpr Word kEngines[] = {
    {"clamav", Label{"security", "anti_virus_engine_clamav"}},
    {"meroav-mcafee", Label{"security", "anti_virus_engine_mcafee"}},
    {"bitdefender", Label{"security", "anti_virus_engine_bitdefender"}},
};

constexpr Word kActions[] = {
    {"delete", Label{"mcp", "mcp_action_delete"}},
    {"quarantine", Label{"mcp", "mcp_action_store"}},
    {"deliver", Label{"mcp", "mcp_action_deliver"}},
};

constexpr Setting kSettings[] = {
    {Label{"security", "enable_antivirus"}, "enable", IsEnable},
    {Label{"security", "enable_safe_browsing"}, "enable_google_safebrowsing", IsEnable},
    {Label{"security", "enable_third_party_database"}, "enable_extra_signature", IsEnable},
    {Label{"security", "anti_virus_auto_update"}, "virus_auto_update", IsEnable},
    {Label{"security", "anti_virus_notify_recipient"}, "notify_recipient", IsEnable},
    {Label{"security", "anti_virus_rewrite_subject"}, "enable_virus_rewrite", IsEnable, kStatusOf},
    {Label{"security", "anti_virus_rewrite_subject"}, "virus_rewrite_subject", nullptr},
    {Label{"security", "anti_virus_engine"}, "anti_virus_engine", EngineText},
    {Label{"security", "anti_virus_action"}, "virus_action", ActionText},
    {Label{"security", "updated_time"}, kHour, UpdateTimeText},
    {Label{"security", "updated_time"}, kMinute, UpdateTimeText},
    {Label{"security", "updated_frequency"}, "frequency", FrequencyText},
};

constexpr Setting kMailTemplates[] = {
    {Label{"security", "anti_virus_delete_template"}, "delete_template", nullptr},
    {Label{"security", "anti_virus_quarantine_template"}, "quarantine_template", nullptr},
};

}  // namespace

Json::Value AntivirusInfo(Json::Value const& /*params*/) {
    return LoadOldState(kApi, "get_antivirus");
}

Json::Value TemplateInfo(Json::Value const& /*params*/) {
    return LoadOldState(kApi, "get_anti_virus_template");
}

Json::Value DiffAntivirus(Json::Value& old_info, Json::Value& params) {
    return DiffSection(old_info, kSection, params);
}

std::string EngineText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kEngines);
}

std::string ActionText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kActions);
}

std::string UpdateTimeText(std::string const& /*member*/, Json::Value const& object) {
    return TimeText(object, kHour, kMinute);
}

std::string FrequencyText(std::string const& member, Json::Value const& object) {
    return GetKeyVal(object, member) + " minutes";
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    if (statement != kSettingChanged) {
        return Ignore();
    }
    Json::Value const settings = GetObjectVal(old_info, kSection);
    Json::Value const request = WithOldMembers(settings, params, {kHour, kMinute});
    return MuggleTranslate(settings, request, diff, MakeTranslators(kSettings));
}

StatementRows TranslateTemplateEdit(std::string const& statement, Json::Value const& old_info,
                                    Json::Value const& params, Json::Value const& diff,
                                    Json::Value const& /*body*/) {
    if (statement != kTemplateEdited) {
        return Ignore();
    }
    return ChangedLabels(old_info, params, diff, MakeTranslators(kMailTemplates));
}

}  // namespace serverlog::log::adminlog::antivirus
