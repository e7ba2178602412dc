#include "schedule/rotation_schedule.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string>

#include "schedule/setting.h"
#include "stores/read_only_database.h"

namespace serverlog::program {

namespace {

constexpr std::uint64_t kMiB = 1 << 20;
constexpr long long kLargestSize = 1 << 20;  // in MiB

struct Period {
    const char* word;
    CountInterval interval;
};

constexpr Period kPeriods[] = {
    {"", CountInterval::Day},
    {"daily", CountInterval::Day},
    {"weekly", CountInterval::Week},
    {"monthly", CountInterval::Month},
};

CountInterval ReadPeriod() {
    if (ReadSetting("enable_rotate_period") != "yes") {
        return CountInterval::Day;
    }
    const std::string word = ReadSetting("log_rotate_period");
    const auto* period = std::find_if(std::begin(kPeriods), std::end(kPeriods),
                                      [&word](const Period& row) { return word == row.word; });
    if (period == std::end(kPeriods)) {
        throw WrongSetting("log_rotate_period", word, "daily, weekly or monthly");
    }
    return period->interval;
}

// A rotation leaves the room of its rows in the file, for those to come.
long long UsedBytes(const ReadOnlyDatabase& database) {
    const long long pages = database.Number("PRAGMA page_count").value_or(0);
    const long long free_pages = database.Number("PRAGMA freelist_count").value_or(0);
    return (pages - free_pages) * database.Number("PRAGMA page_size").value_or(0);
}

}  // namespace

RotationSchedule ReadRotationSchedule() {
    RotationSchedule schedule;
    schedule.period = ReadPeriod();
    schedule.size =
        static_cast<std::uint64_t>(ReadNumberSetting("log_rotate_size", 0, kLargestSize, 0)) * kMiB;
    return schedule;
}

bool IsRotationDue(const RotationSchedule& schedule, const StoreFacts& facts, std::time_t now) {
    if (!std::filesystem::exists(facts.current)) {
        return false;
    }
    try {
        const ReadOnlyDatabase database(facts.current);
        const std::optional<long long> oldest =
            database.Number("SELECT MIN(" + facts.date_column + ") FROM " + facts.table);
        if (!oldest || *oldest >= getRoundTime(now, CountInterval::Day)) {
            return false;
        }
        const bool has_grown =
            schedule.size > 0 && static_cast<std::uint64_t>(UsedBytes(database)) >= schedule.size;
        return has_grown || *oldest < getRoundTime(now, schedule.period);
    } catch (const std::exception&) {
        return true;
    }
}

}  // namespace serverlog::program
