#include "log/adminlog/tabs/logmanage/log_manage.h"

#include "log/adminlog/tabs/common/fixed_word.h"
#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/time_text.h"
#include "utils/strings.h"

namespace serverlog::log::adminlog::logmanage {

namespace {

constexpr Word kDayLists[] = {
    {"0,6", Label{"schedule", "schedule_weekend"}},
    {"1,2,3,4,5", Label{"schedule", "schedule_weekdays"}},
    {"0,1,2,3,4,5,6", Label{"schedule", "schedule_daily"}},
};

constexpr Word kDays[] = {
    {"0", Label{"schedule", "dayabbre_sun"}}, {"1", Label{"schedule", "dayabbre_mon"}},
    {"2", Label{"schedule", "dayabbre_tue"}}, {"3", Label{"schedule", "dayabbre_wed"}},
    {"4", Label{"schedule", "dayabbre_thu"}}, {"5", Label{"schedule", "dayabbre_fri"}},
    {"6", Label{"schedule", "dayabbre_sat"}},
};

constexpr Word kPeriods[] = {
    {"weekly", Label{"schedule", "schedule_weekly"}},
    {"daily", Label{"schedule", "schedule_daily"}},
    {"monthly", Label{"time", "ntpdate_monthly"}},
};

constexpr FixedWord kProtocols[] = {{"udp", "UDP"}, {"tcp", "TCP"}};

constexpr FixedWord kFormats[] = {{"bsd", "BSD (RFC 3164)"}, {"ietf", "IETF (RFC 5424)"}};

std::string StartTime(std::string const& /*member*/, Json::Value const& object) {
    return TimeText(object, "hour", "minute");
}

std::string ProtocolText(std::string const& member, Json::Value const& object) {
    return FixedWordText(GetKeyVal(object, member), kProtocols);
}

std::string FormatText(std::string const& member, Json::Value const& object) {
    return FixedWordText(GetKeyVal(object, member), kFormats);
}

std::string PeriodText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kPeriods);
}

constexpr Setting kAboveMinute[] = {
    {Label{"maillog", "enable_log_archive"}, "enable_schedule", IsEnable},
    {Label{"maillog", "archive_destination"}, "path", nullptr},
    {Label{"maillog", "forward_to_non_balancer"}, "enable_forward_to_other_node", IsEnable},
    {Label{"maillog", "forward_to_syslog_server"}, "enable_forward_to_other_machine", IsEnable},
    {Label{"maillog", "syslog_server_ip"}, "server", nullptr},
    {Label{"maillog", "syslog_server_port"}, "port", nullptr},
    {Label{"maillog", "syslog_server_ssl"}, "enable_ssl", IsEnable},
    {Label{"maillog", "log_rotate_period"}, "enable_rotate_period", IsEnable},
    {Label{"maillog", "log_rotate_size"}, "rotate_size", nullptr},
    {Label{"schedule", "run_on_days"}, "weekday", WeekdayText},
    {Label{"schedule", "run_task"}, "hour", StartTime},
};

constexpr Setting kMinute[] = {{Label{"schedule", "run_task"}, "minute", StartTime}};

constexpr Setting kBelowMinute[] = {
    {Label{"maillog", "syslog_server_transmode"}, "protocol", ProtocolText},
    {Label{"maillog", "syslog_server_format"}, "format", FormatText},
    {Label{"maillog", "log_rotate_period"}, "rotate_period", PeriodText},
};

}  // namespace

Json::Value LogConfInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.Log", "conf_get");
}

std::string WeekdayText(std::string const& member, Json::Value const& object) {
    std::string const days = GetKeyVal(object, member);
    std::string list = WordText(days, kDayLists);
    if (!list.empty()) {
        return list;
    }
    std::vector<std::string> words;
    for (std::string const& day : utils::Split(days, ',')) {
        words.push_back(WordText(day, kDays));
    }
    return utils::Join(words, ",");
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    if (statement != kSettingChanged) {
        return Ignore();
    }
    Json::Value const settings = WithOldMembers(old_info, params, {"hour", "minute"});
    std::vector<Translator> translators = MakeTranslators(kAboveMinute);
    auto const above = MuggleTranslate(old_info, settings, diff, translators).size();
    for (Translator const& translator : MakeTranslators(kBelowMinute)) {
        translators.push_back(translator);
    }
    StatementRows rows = MuggleTranslate(old_info, settings, diff, translators);
    // The minute has the hour's label, which one call writes once. It is to be told for itself all
    // the same, in its place; the two labels of the rotation period are not.
    StatementRows const minute =
        MuggleTranslate(old_info, settings, diff, MakeTranslators(kMinute));
    rows.insert(rows.begin() + static_cast<StatementRows::difference_type>(above), minute.begin(),
                minute.end());
    return rows;
}

}  // namespace serverlog::log::adminlog::logmanage
