#include "webapi/time_words.h"

#include "utils/time.h"

namespace serverlog::webapi::internal {

std::string_view TimeFormat::TextOf(long seconds) {
    const std::string_view text = text_.Of(seconds);
    return text.empty() ? std::string_view(utils::kNoCalendarTime) : text;
}

TimeWords TimeFormat::Of(long seconds) {
    const std::string_view text = TextOf(seconds);
    return {utils::TimeText::DateOf(text), utils::TimeText::TimeOf(text)};
}

}  // namespace serverlog::webapi::internal
