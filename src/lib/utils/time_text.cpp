#include <mailserver-log/utils/time_text.h>

#include <charconv>

namespace serverlog::utils {

namespace {

char* AppendTwoDigits(char* out, char before, int number) {
    *out++ = before;
    *out++ = static_cast<char>('0' + number / 10);
    *out++ = static_cast<char>('0' + number % 10);
    return out;
}

}  // namespace

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
    size_ = 0;
    if (localtime_r(&time, &local) == nullptr) {
        return false;
    }
    minute_ = time - local.tm_sec;
    const int year = local.tm_year + 1900;
    if (year < 1000 || year > 9999) {
        size_ = std::strftime(text_, sizeof text_, "%Y-%m-%d %H:%M:%S", &local);
        return size_ > 0;
    }
    // By hand the usual years take a tenth of that: in a quiet log each row has a minute of its
    // own, and it was a tenth of the time of an export.
    char* end = std::to_chars(text_, text_ + sizeof text_, year).ptr;
    end = AppendTwoDigits(end, '-', local.tm_mon + 1);
    end = AppendTwoDigits(end, '-', local.tm_mday);
    end = AppendTwoDigits(end, ' ', local.tm_hour);
    end = AppendTwoDigits(end, ':', local.tm_min);
    end = AppendTwoDigits(end, ':', local.tm_sec);
    size_ = static_cast<std::size_t>(end - text_);
    return true;
}

}  // namespace serverlog::utils
