#include "utils/time.h"

namespace serverlog::utils {

std::string ConvertToTimeString(long time) {
    const std::time_t seconds = time;
    std::tm local = {};
    localtime_r(&seconds, &local);
    char text[128] = {};
    std::strftime(text, sizeof text, "%Y-%m-%d %T", &local);
    return text;
}

std::time_t ConvertTimeStringToTime(const std::string& date) {
    std::tm local = {};
    // Any result will do: what could not be read stays zero. tm_isdst stays zero too, so that a day
    // in summer starts an hour into it; the bounds of stored searches rest on that.
    strptime(date.c_str(), "%Y/%m/%d", &local);
    return std::mktime(&local);
}

}  // namespace serverlog::utils
