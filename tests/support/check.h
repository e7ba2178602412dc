#pragma once

#include <cerrno>
#include <system_error>

namespace test {

/// Throws std::system_error with errno unless a system call was `done`.
///
/// @param what  the call's name
inline void Check(bool done, const char* what) {
    if (!done) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

}  // namespace test
