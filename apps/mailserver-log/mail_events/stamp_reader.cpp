#include "mail_events/stamp_reader.h"

#include <cstdlib>
#include <ctime>
#include <limits>

namespace serverlog::program {

namespace {

constexpr std::int64_t kDay = 86400;
constexpr int kYearsBack = 8;  // to the last 29 February, over a century that has none
constexpr std::string_view kMonths = "JanFebMarAprMayJunJulAugSepOctNovDec";
constexpr std::size_t kMinuteLength = 12;  // "Nov 22 10:00"
constexpr std::size_t kRfc3164Length = 15;
constexpr std::size_t kRfc3339Length = 19;  // without the fraction and the zone

// The number that the digits of `text` make; -1 if it holds anything else.
int Number(std::string_view text) {
    int value = text.empty() ? -1 : 0;
    for (const char c : text) {
        if (c < '0' || c > '9') {
            return -1;
        }
        value = value * 10 + (c - '0');
    }
    return value;
}

bool InRange(int value, int lowest, int highest) {
    return value >= lowest && value <= highest;
}

bool IsTime(int hour, int minute, int second) {
    return InRange(hour, 0, 23) && InRange(minute, 0, 59) && InRange(second, 0, 60);
}

bool Fits(std::int64_t seconds) {
    return seconds >= 0 && seconds <= std::numeric_limits<std::int32_t>::max();
}

// Takes the digits behind a point, in microseconds.
std::int32_t TakeFraction(std::string_view& line) {
    std::int32_t value = 0;
    std::int32_t unit = 100000;
    line.remove_prefix(1);
    while (!line.empty() && line[0] >= '0' && line[0] <= '9') {
        value += (line[0] - '0') * unit;
        unit /= 10;
        line.remove_prefix(1);
    }
    return value;
}

// Takes "Z", "+01:00" or "+0100": how far local time is ahead, in seconds.
std::optional<int> TakeZone(std::string_view& line) {
    if (line.substr(0, 1) == "Z") {
        line.remove_prefix(1);
        return 0;
    }
    if (line.size() < 5 || (line[0] != '+' && line[0] != '-')) {
        return std::nullopt;
    }
    const std::size_t colon = line[3] == ':' ? 1 : 0;
    const int hours = Number(line.substr(1, 2));
    const int minutes = Number(line.substr(3 + colon, 2));
    if (!InRange(hours, 0, 23) || !InRange(minutes, 0, 59) || line.size() < 5 + colon) {
        return std::nullopt;
    }
    const int seconds = (hours * 60 + minutes) * 60;
    const bool behind = line[0] == '-';
    line.remove_prefix(5 + colon);
    return behind ? -seconds : seconds;
}

}  // namespace

struct StampReader::Minute {
    int month;  // from 0
    int day;
    int hour;
    int minute;
};

bool StampReader::Read(std::string_view& line, Stamp& stamp) {
    return ReadRfc3164(line, stamp) || ReadRfc3339(line, stamp);
}

bool StampReader::ReadRfc3164(std::string_view& line, Stamp& stamp) {
    if (line.size() < kRfc3164Length || line[3] != ' ' || line[6] != ' ' || line[9] != ':' ||
        line[12] != ':') {
        return false;
    }
    const int second = Number(line.substr(13, 2));
    if (!InRange(second, 0, 60)) {
        return false;
    }
    if (line.substr(0, kMinuteLength) != cached_text_) {
        const std::size_t month = kMonths.find(line.substr(0, 3));
        const std::string_view day = line.substr(line[4] == ' ' ? 5 : 4, line[4] == ' ' ? 1 : 2);
        const Minute minute = {static_cast<int>(month / 3), Number(day), Number(line.substr(7, 2)),
                               Number(line.substr(10, 2))};
        if (month == std::string_view::npos || month % 3 != 0 || !InRange(minute.day, 1, 31) ||
            !IsTime(minute.hour, minute.minute, second)) {
            return false;
        }
        const std::optional<std::int64_t> seconds = Resolve(minute);
        if (!seconds) {
            return false;
        }
        cached_text_ = line.substr(0, kMinuteLength);
        cached_seconds_ = *seconds;
    }
    stamp = {cached_seconds_ + second, 0};
    if (neighbour_) {
        neighbour_ = stamp.seconds;
    }
    line.remove_prefix(kRfc3164Length);
    return true;
}

std::optional<std::int64_t> StampReader::Resolve(const Minute& minute) const {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    localtime_r(&now, &local);
    std::optional<std::int64_t> best;
    for (int year = local.tm_year + 1; year >= local.tm_year - kYearsBack; --year) {
        std::tm time = {};
        time.tm_year = year;
        time.tm_mon = minute.month;
        time.tm_mday = minute.day;
        time.tm_hour = minute.hour;
        time.tm_min = minute.minute;
        time.tm_isdst = -1;
        const std::int64_t seconds = mktime(&time);
        const bool exists = time.tm_mon == minute.month && time.tm_mday == minute.day;
        if (!exists || seconds > now + kDay || !Fits(seconds)) {
            continue;
        }
        if (!neighbour_) {
            return seconds;
        }
        if (!best || std::llabs(seconds - *neighbour_) < std::llabs(*best - *neighbour_)) {
            best = seconds;
        }
    }
    return best;
}

bool StampReader::ReadRfc3339(std::string_view& line, Stamp& stamp) {
    if (line.size() < kRfc3339Length || line[4] != '-' || line[7] != '-' || line[10] != 'T' ||
        line[13] != ':' || line[16] != ':') {
        return false;
    }
    std::tm time = {};
    time.tm_year = Number(line.substr(0, 4)) - 1900;
    time.tm_mon = Number(line.substr(5, 2)) - 1;
    time.tm_mday = Number(line.substr(8, 2));
    time.tm_hour = Number(line.substr(11, 2));
    time.tm_min = Number(line.substr(14, 2));
    time.tm_sec = Number(line.substr(17, 2));
    const int day = time.tm_mday;
    if (!InRange(time.tm_year, 70, 200) || !InRange(time.tm_mon, 0, 11) || !InRange(day, 1, 31) ||
        !IsTime(time.tm_hour, time.tm_min, time.tm_sec)) {
        return false;
    }
    std::string_view rest = line.substr(kRfc3339Length);
    const std::int32_t microseconds = rest.substr(0, 1) == "." ? TakeFraction(rest) : 0;
    const std::optional<int> zone = TakeZone(rest);
    const int second = time.tm_sec;
    time.tm_sec = 0;  // a leap second would turn into the next minute, or day
    const std::int64_t seconds = timegm(&time) + second - zone.value_or(0);
    if (!zone || time.tm_mday != day || !Fits(seconds)) {
        return false;
    }
    stamp = {seconds, microseconds};
    neighbour_ = seconds;
    cached_text_.clear();
    line = rest;
    return true;
}

}  // namespace serverlog::program
