#pragma once

#include <mailserver-log/db/store_traits.h>

#include <ctime>
#include <optional>
#include <string>

namespace serverlog::program::archive_stamp {

/// An empty file beside the stores; its time of change is that of the last run by the schedule.
inline const std::string kPath = std::string(db::kSpoolFolder) + "archive.stamp";

/// The time that is kept there; nothing if there is none yet.
std::optional<std::time_t> Read();

/// Keeps a time there. Throws Failure if that cannot be done.
void Write(std::time_t time);

}  // namespace serverlog::program::archive_stamp
