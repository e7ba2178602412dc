#pragma once

#include <cstdint>
#include <ctime>
#include <string>

namespace serverlog::program {

/// A time in local time, "2026-11-22 10:00:00"; "-" for one that the calendar does not know.
std::string ReadableTime(std::time_t time);

/// A size as "999 B", "1.5 KiB", "2.0 GiB".
std::string ReadableSize(std::uint64_t bytes);

}  // namespace serverlog::program
