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
/// Until the copy is whole it stands beside `to` as "<to>.part": half a file would pass for one
/// that is younger than its source. A failure leaves nothing but what was at `to` before. Only what
/// is no regular file, such as a link, takes the bytes itself.
///
/// @param overwrite  whether an existing `to` is replaced or is a failure
/// @return           the system's reason for a failure; file_exists also where both paths are the
///                   same file
boost::system::error_code CopyRegularFile(const std::string& from, const std::string& to,
                                          bool overwrite);

}  // namespace serverlog::utils
