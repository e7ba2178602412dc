#pragma once

#include <grp.h>
#include <pwd.h>

#include <cerrno>
#include <optional>
#include <string>
#include <vector>

namespace platform {

/// Runs one of the reentrant look-ups of the system's databases (getpwnam_r(3), getgrgid_r(3) and
/// the like) with a buffer that grows until the record fits.
///
/// @tparam Record  the record type, with text members that point into the buffer
/// @param look_up  the function, such as getgrgid_r
/// @param key      name or number to look up
/// @param take     called with the record where there is one, while the buffer lives
/// @return whether there was a record
template <typename Record, typename Key, typename Take>
bool LookUp(int (*look_up)(Key, Record*, char*, std::size_t, Record**), Key key, Take take) {
    std::vector<char> buffer(1024);
    for (;;) {
        Record record = {};
        Record* found = nullptr;
        const int error = look_up(key, &record, buffer.data(), buffer.size(), &found);
        if (error == ERANGE) {
            buffer.resize(buffer.size() * 2);
            continue;
        }
        if (error == EINTR) {
            continue;
        }
        if (found == nullptr) {
            return false;
        }
        take(*found);
        return true;
    }
}

}  // namespace platform
