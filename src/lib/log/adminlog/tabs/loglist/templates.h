#pragma once

/// The statement templates that the functions of the log file list know.
namespace serverlog::log::adminlog::loglist {

inline constexpr char kLogDeleted[] = "%0% %1% %2% was deleted.";
inline constexpr char kLogDownloaded[] = "%0% %1% %2% was downloaded.";
inline constexpr char kLogDbGenerated[] = "%0% of %1% %2% was executed.";

}  // namespace serverlog::log::adminlog::loglist
