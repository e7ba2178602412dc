#include "mailserver/round_time.h"

#include <ctime>
#include <utility>

namespace {

constexpr long kHour = 3600;
constexpr long kDay = 24 * kHour;

long FloorDivide(long number, long divisor) {
    return number / divisor - (number % divisor < 0 ? 1 : 0);
}

// Two times lie in one period exactly when their keys are equal. Later periods have greater keys,
// but for an hour that the clocks repeat: its passes differ in the offset alone.
using PeriodKey = std::pair<long, long>;

PeriodKey KeyOf(long time, CountInterval interval) {
    const std::time_t moment = time;
    std::tm local = {};
    localtime_r(&moment, &local);
    const long day = FloorDivide(time + local.tm_gmtoff, kDay);
    switch (interval) {
        case CountInterval::Hour:
            return {day * 24 + local.tm_hour, local.tm_gmtoff};
        case CountInterval::Day:
            return {day, 0};
        case CountInterval::Week:
            return {FloorDivide(day + 3, 7), 0};  // the epoch was a Thursday
        case CountInterval::Month:
            break;
    }
    return {local.tm_year * 12L + local.tm_mon, 0};
}

// The least span back from any time of a period that is sure to end outside it.
long SpanBack(CountInterval interval) {
    switch (interval) {
        case CountInterval::Hour:
            return kHour;
        case CountInterval::Day:
            return 2 * kDay;
        case CountInterval::Week:
            return 8 * kDay;
        case CountInterval::Month:
            break;
    }
    return 32 * kDay;
}

// The first time for which the condition holds, if it does not hold at `before`, holds at `after`
// and changes once in between. Asking the calendar this way stays right where the clocks skip or
// repeat the midnight that a computed answer would name.
template <typename Condition>
long FirstTime(long before, long after, Condition holds) {
    while (after - before > 1) {
        const long middle = before + (after - before) / 2;
        (holds(middle) ? after : before) = middle;
    }
    return after;
}

}  // namespace

long getRoundTime(long time, CountInterval interval) {
    const PeriodKey key = KeyOf(time, interval);
    return FirstTime(time - SpanBack(interval), time,
                     [&](long other) { return KeyOf(other, interval) == key; });
}

long getNextMonthStartTime(long time) {
    const PeriodKey key = KeyOf(time, CountInterval::Month);
    return FirstTime(time, time + SpanBack(CountInterval::Month),
                     [&](long other) { return KeyOf(other, CountInterval::Month) > key; });
}
