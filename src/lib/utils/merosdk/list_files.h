#pragma once

#include <string>
#include <vector>

namespace serverlog::utils {

/// The regular files of a folder whose names begin with `prefix`, each with the folder's path, in
/// the order of their names.
///
/// @throws Exception<ETag::SDK> with ListFolderFail when the folder can't be read or memory is out
std::vector<std::string> ListFilesWithPrefix(const std::string& folder, const std::string& prefix);

}  // namespace serverlog::utils
