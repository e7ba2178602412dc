#include <mailserver-log/utils/time_text.h>

namespace serverlog::utils {

std::string_view TimeText::Of(std::time_t time) {
    const bool same_minute = size_ > 0 && time >= minute_ && time < minute_ + kMinute;
    if (!same_minute && !Format(time)) {
        return {};
    }
    const auto seconds = static_cast<int>(time - minute_);
    text_[size_ - 2] = static_cast<char>('0' + seconds / 10);
    text_[size_ - 1] = static_cast<char>('0' + seconds % 10);
    return {text_, size_};
}

bool TimeText::Format(std::time_t time) {
    std::tm local = {};
    size_ = localtime_r(&time, &local) == nullptr
                ? 0
                : std::strftime(text_, sizeof text_, "%Y-%m-%d %H:%M:%S", &local);
    minute_ = time - local.tm_sec;
    return size_ > 0;
}

}  // namespace serverlog::utils
