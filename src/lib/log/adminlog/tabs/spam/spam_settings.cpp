#include "log/adminlog/tabs/spam/spam_settings.h"

#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/tabs/spam/score_text.h"
#include "log/adminlog/tabs/spam/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/settings_page.h"
#include "log/adminlog/toolkit/time_text.h"

namespace serverlog::log::adminlog::spam {

namespace {

constexpr char kSection[] = "spamassassin";

constexpr char kUpdateHour[] = "rule_update_hour";
constexpr char kUpdateMinute[] = "rule_update_minute";
constexpr char kLearnHour[] = "report_autolearn_hour";
constexpr char kLearnMinute[] = "report_autolearn_minute";

constexpr Word kEngines[] = {
    {"rspamd", Label{"spam", "spam_engine_rspamd"}},
    {"bitdefender", Label{"security", "anti_virus_engine_bitdefender"}},
};

constexpr Word kReports[] = {
    {"non_encapsulate", Label{"spam", "report_safe_attach"}},
    {"encapsulate", Label{"spam", "report_safe_no_attach"}},
    {"plain_text_only", Label{"spam", "report_safe_text_attach"}},
};

constexpr Setting kSettings[] = {
    {Label{"spam", "enable_spam"}, "enable", IsEnable},
    {Label{"spam", "anti_spam_engine"}, "spam_engine", SpamEngineText},
    {Label{"security", "postscreen_enable"}, "enable_postscreen", IsEnable},
    {Label{"security", "greylist_enable"}, "enable_greylist", IsEnable},
    {Label{"security", "clean_interval"}, "spam_clean_enable", IsEnable, kStatusOf},
    {Label{"security", "clean_interval"}, "spam_clean_interval", nullptr},
    {Label{"security", "spamassassin_auto_update"}, "enable_auto_update", IsEnable},
    {Label{"spam", "use_auto_whitelist"}, "enable_auto_whitelist", IsEnable},
    {Label{"spam", "enable_spam_report"}, "enable_report", IsEnable},
    {Label{"spam", "use_auto_learn"}, "enable_auto_learn", IsEnable},
    {Label{"spam", "enable_report_autolearn"}, "enable_report_autolearn", IsEnable},
    {Label{"spam", "rewrite_subject"}, "enable_rewrite", IsEnable, kStatusOf},
    {Label{"security", "learn_as_non_spam_threshold"}, "learn_threshold_non_spam", ScoreText},
    {Label{"security", "learn_as_spam_threshold"}, "learn_threshold_spam", ScoreText},
    // The text files spell the keys of both addresses so.
    {Label{"spam", "ham_repot_address"}, "report_ham_account", nullptr},
    {Label{"spam", "spam_repot_address"}, "report_spam_account", nullptr},
    {Label{"spam", "required_score"}, "required_score", ScoreText},
    {Label{"spam", "rewrite_subject"}, "rewrite_subject", nullptr},
    {Label{"security", "updated_time"}, kUpdateHour, RuleUpdateTimeText},
    {Label{"security", "updated_time"}, kUpdateMinute, RuleUpdateTimeText},
    {Label{"spam", "report_autolearn_time"}, kLearnHour, AutoLearnTimeText},
    {Label{"spam", "report_autolearn_time"}, kLearnMinute, AutoLearnTimeText},
    {Label{"spam", "report_safe"}, "report_mechanism", ReportText},
    {Label{"spam", "bitdefender_spam_action"}, "bitdefender_spam_action", nullptr},
    {Label{"spam", "bitdefender_phishing_action"}, "bitdefender_phishing_action", nullptr},
    {Label{"spam", "bitdefender_marketing_email_action"}, "bitdefender_marketing_email_action",
     nullptr},
    {Label{"spam", "bitdefender_bulk_spam_action"}, "bitdefender_bulk_spam_action", nullptr},
};

}  // namespace

Json::Value SpamInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.Security", "get_spam");
}

Json::Value DiffSpam(Json::Value& old_info, Json::Value& params) {
    return DiffSection(old_info, kSection, params);
}

std::string SpamEngineText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kEngines);
}

std::string ReportText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kReports);
}

std::string RuleUpdateTimeText(std::string const& /*member*/, Json::Value const& object) {
    return TimeText(object, kUpdateHour, kUpdateMinute);
}

std::string AutoLearnTimeText(std::string const& /*member*/, Json::Value const& object) {
    return TimeText(object, kLearnHour, kLearnMinute);
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    if (statement != kSettingChanged) {
        return Ignore();
    }
    Json::Value const settings = GetObjectVal(old_info, kSection);
    Json::Value const request =
        WithOldMembers(settings, params, {kUpdateHour, kUpdateMinute, kLearnHour, kLearnMinute});
    return MuggleTranslate(settings, request, diff, MakeTranslators(kSettings));
}

}  // namespace serverlog::log::adminlog::spam
