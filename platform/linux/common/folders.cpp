#include "common/folders.h"

#include <sys/stat.h>

namespace platform {

void MakeParentFolders(const std::string& path) {
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos;
         slash = path.find('/', slash + 1)) {
        const std::string folder = path.substr(0, slash);
        if (mkdir(folder.c_str(), 0755) == 0) {
            chmod(folder.c_str(), 0755);
        }
    }
}

}  // namespace platform
