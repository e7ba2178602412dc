#pragma once

#include <string>

namespace platform {

/// Makes the folder that a file lies in, with its missing parents, open to all for reading whatever
/// the process's umask: what lies in there is shared between users.
///
/// @param path  path of the file
///
/// Reports nothing: where it fails, using the file fails and tells why.
void MakeParentFolders(const std::string& path);

}  // namespace platform
