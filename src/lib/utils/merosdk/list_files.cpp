#include "utils/merosdk/list_files.h"

#include <mailserver-log/exception/exception.h>
#include <mlibc/file.h>
#include <mlibc/sz_list.h>

#include <memory>

namespace serverlog::utils {

namespace {

constexpr int kRoomAtFirst = 1024;

// The platform's value for regular files, each with its folder's path.
constexpr int kFilesWithPath = 130;

struct ListFree {
    void operator()(MLIBCSzList* list) const { MLIBCSzListFree(list); }
};

}  // namespace

std::vector<std::string> ListFilesWithPrefix(const std::string& folder, const std::string& prefix) {
    MLIBCSzList* list = MLIBCSzListAlloc(kRoomAtFirst);
    if (list == nullptr) {
        throw make_exception<ETag::SDK>(SDKError::ListFolderFail, "Out of memory");
    }
    const int result = MLIBCFileEnumDir(folder.c_str(), prefix.c_str(), &list, kFilesWithPath);
    // Owned from here on only: adding to the list may move it.
    const std::unique_ptr<MLIBCSzList, ListFree> owner(list);
    if (result < 0) {
        throw make_exception<ETag::SDK>(SDKError::ListFolderFail,
                                        folder + " enum files with prefix: " + prefix + " fail");
    }
    return {list->items, list->items + list->count};
}

}  // namespace serverlog::utils
