#pragma once

#include <boost/system/error_code.hpp>
#include <string>

namespace serverlog::utils {

/// Waits until all bytes of a file, or all names of a folder, are on the disk (fsync(2)). A file
/// system that can't do so for folders counts as done.
///
/// @return the system's reason for a failure. Never throws.
boost::system::error_code SyncToDisk(const std::string& path);

}  // namespace serverlog::utils
