#include "schedule/archive_schedule.h"

#include <sstream>
#include <string>

#include "schedule/setting.h"

namespace serverlog::program {

namespace {

constexpr char kWeekday[] = "archive_weekday";
constexpr int kUsualHour = 4;
constexpr int kDaysOfWeek = 7;

std::array<bool, kDaysOfWeek> ReadDays() {
    std::array<bool, kDaysOfWeek> days = {};
    const std::string list = ReadSetting(kWeekday);
    if (list.empty()) {
        days.fill(true);
        return days;
    }
    std::istringstream words(list);
    for (std::string word; std::getline(words, word, ',');) {
        if (word.size() != 1 || word[0] < '0' || word[0] >= '0' + kDaysOfWeek) {
            throw WrongSetting(kWeekday, list,
                               "a list of days such as 1,2,3,4,5, where 0 is Sunday");
        }
        days.at(static_cast<std::size_t>(word[0] - '0')) = true;
    }
    return days;
}

}  // namespace

ArchiveSchedule ReadArchiveSchedule() {
    ArchiveSchedule schedule;
    schedule.days = ReadDays();
    schedule.hour = static_cast<int>(ReadNumberSetting("archive_hour", 0, 23, kUsualHour));
    schedule.minute = static_cast<int>(ReadNumberSetting("archive_minute", 0, 59, 0));
    return schedule;
}

std::time_t LatestArchiveTime(const ArchiveSchedule& schedule, std::time_t now) {
    std::tm today = {};
    localtime_r(&now, &today);
    // On the day of the week that today is, the time may still be to come: a week ago it was past.
    for (int days_ago = 0; days_ago <= kDaysOfWeek; ++days_ago) {
        std::tm moment = {};
        moment.tm_year = today.tm_year;
        moment.tm_mon = today.tm_mon;
        moment.tm_mday = today.tm_mday - days_ago;
        moment.tm_hour = schedule.hour;
        moment.tm_min = schedule.minute;
        moment.tm_isdst = -1;
        const std::time_t time = std::mktime(&moment);
        const auto weekday =
            static_cast<std::size_t>((today.tm_wday - days_ago + kDaysOfWeek) % kDaysOfWeek);
        if (schedule.days.at(weekday) && time <= now) {
            return time;
        }
    }
    return 0;
}

}  // namespace serverlog::program
