#include "mlibc/file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "common/last_error.h"

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

bool IsRegularFile(DIR* folder, const char* name) {
    struct stat status = {};
    return fstatat(dirfd(folder), name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISREG(status.st_mode);
}

bool IsSelected(DIR* folder, const char* name, const char* prefix, int flags) {
    if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) {
        return false;
    }
    if (std::strncmp(name, prefix, std::strlen(prefix)) != 0) {
        return false;
    }
    return (flags & MLIBC_ENUM_REGULAR_FILES) == 0 || IsRegularFile(folder, name);
}

bool ReadNames(const char* path, const char* prefix, int flags, std::vector<std::string>& names) {
    const std::unique_ptr<DIR, CloseFolder> folder(opendir(path));
    if (folder == nullptr) {
        return false;
    }
    for (;;) {
        errno = 0;  // readdir(3) tells a failure from the end by errno alone
        const dirent* entry = readdir(folder.get());
        if (entry == nullptr) {
            return errno == 0;
        }
        if (IsSelected(folder.get(), entry->d_name, prefix, flags)) {
            names.emplace_back(entry->d_name);
        }
    }
}

bool Reserve(MLIBCSzList& list, std::size_t more) {
    const std::size_t needed = static_cast<std::size_t>(list.count) + more;
    if (needed <= static_cast<std::size_t>(list.capacity)) {
        return true;
    }
    if (needed > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        return false;
    }
    auto* items = static_cast<char**>(std::realloc(list.items, needed * sizeof(char*)));
    if (items == nullptr) {
        return false;
    }
    list.items = items;
    list.capacity = static_cast<int>(needed);
    return true;
}

bool Append(MLIBCSzList& list, const std::vector<std::string>& texts) {
    if (!Reserve(list, texts.size())) {
        return false;
    }
    const int former_count = list.count;
    for (const std::string& text : texts) {
        char* copy = strdup(text.c_str());
        if (copy == nullptr) {
            while (list.count > former_count) {
                std::free(list.items[--list.count]);
            }
            return false;
        }
        list.items[list.count++] = copy;
    }
    return true;
}

}  // namespace

int MLIBCFileEnumDir(const char* folder, const char* prefix, MLIBCSzList** list, int flags) {
    constexpr int kKnownFlags = MLIBC_ENUM_REGULAR_FILES | MLIBC_ENUM_FULL_PATH;
    if (folder == nullptr || prefix == nullptr || list == nullptr || *list == nullptr ||
        (flags & ~kKnownFlags) != 0) {
        return -1;
    }
    std::vector<std::string> names;
    if (!ReadNames(folder, prefix, flags, names)) {
        return -1;
    }
    std::sort(names.begin(), names.end());
    if ((flags & MLIBC_ENUM_FULL_PATH) != 0) {
        std::string start = folder;
        if (start.back() != '/') {
            start += '/';
        }
        for (std::string& name : names) {
            name.insert(0, start);
        }
    }
    return Append(**list, names) ? static_cast<int>(names.size()) : -1;
}

bool MLIBCFileExist(const char* path) {
    struct stat status = {};
    if (path == nullptr || stat(path, &status) != 0) {
        PLATFORM_SET_LAST_ERROR(path == nullptr ? EINVAL : errno);
        return false;
    }
    return true;
}
