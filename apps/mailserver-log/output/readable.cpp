#include "output/readable.h"

#include <cstdio>
#include <iterator>

namespace serverlog::program {

std::string ReadableTime(std::time_t time) {
    std::tm local = {};
    char text[64] = {};
    if (localtime_r(&time, &local) == nullptr ||
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local) == 0) {
        return "-";
    }
    return text;
}

std::string ReadableSize(std::uint64_t bytes) {
    constexpr const char* kUnits[] = {"KiB", "MiB", "GiB", "TiB"};
    if (bytes < 1024) {
        return std::to_string(bytes) + " B";
    }
    auto size = static_cast<double>(bytes) / 1024;
    std::size_t unit = 0;
    for (; size >= 1024 && unit + 1 < std::size(kUnits); ++unit) {
        size /= 1024;
    }
    char text[64] = {};
    std::snprintf(text, sizeof text, "%.1f %s", size, kUnits[unit]);
    return text;
}

}  // namespace serverlog::program
