#include "utils/time.h"

#include <mailserver-log/utils/time_text.h>

#include <string_view>

namespace serverlog::utils {

std::string ConvertToTimeString(long time) {
    TimeText text;
    const std::string_view found = text.Of(time);
    return found.empty() ? kNoCalendarTime : std::string(found);
}

std::time_t ConvertTimeStringToTime(const std::string& date) {
    std::tm local = {};
    // Any result will do: what could not be read stays zero. tm_isdst stays zero too, so that a day
    // in summer starts an hour into it; the bounds of stored searches rest on that.
    strptime(date.c_str(), "%Y/%m/%d", &local);
    return std::mktime(&local);
}

}  // namespace serverlog::utils
