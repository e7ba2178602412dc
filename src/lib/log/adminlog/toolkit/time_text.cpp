#include "log/adminlog/toolkit/time_text.h"

#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/reading.h"

#include <charconv>
#include <system_error>

namespace serverlog::log::adminlog {

namespace {

std::string TwoDigits(std::string const& text) {
    char const* const end = text.data() + text.size();
    int number = 0;
    auto const [stop, error] = std::from_chars(text.data(), end, number);
    return stop == end && error == std::errc() ? Time00Format(number) : text;
}

}  // namespace

std::string TimeText(Json::Value const& object, std::string const& hour_key,
                     std::string const& minute_key) {
    return TwoDigits(GetKeyVal(object, hour_key)) + " : " +
           TwoDigits(GetKeyVal(object, minute_key));
}

Json::Value WithOldMembers(Json::Value const& old_info, Json::Value params,
                           std::initializer_list<char const*> keys) {
    for (char const* key : keys) {
        if (!params.isMember(key) && old_info.isMember(key)) {
            params[key] = old_info[key];
        }
    }
    return params;
}

}  // namespace serverlog::log::adminlog
