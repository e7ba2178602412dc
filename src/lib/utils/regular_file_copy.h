#pragma once

#include <boost/system/error_code.hpp>
#include <string>

namespace serverlog::utils {

/// Copies the contents and the mode of a regular file, also to another file system.
///
/// In place of boost::filesystem::copy_file, which copies by copy_file_range(2) from Boost 1.74 on:
/// kernels from 5.19 on refuse that between most file systems (EXDEV), and only later releases of
/// Boost know another way then.
///
/// @param overwrite  whether an existing `to` is overwritten or is a failure
/// @return           the system's reason for a failure; file_exists also where both paths are the
///                   same file. A failure on the way leaves a part of the file at `to`.
boost::system::error_code CopyRegularFile(const std::string& from, const std::string& to,
                                          bool overwrite);

}  // namespace serverlog::utils
