#pragma once

#include <string>
#include <vector>

namespace serverlog::utils {

/// The entries of a folder whose names begin with `prefix`, in the platform's form and order.
///
/// @throws Exception<ETag::SDK> with ListFolderFail when the folder can't be read or memory is out
std::vector<std::string> ListFilesWithPrefix(const std::string& folder, const std::string& prefix);

}  // namespace serverlog::utils
