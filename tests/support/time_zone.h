#pragma once

#include <stdlib.h>
#include <time.h>

#include <string>

namespace test {

/// Sets the time zone of the process.
inline void SetZone(const std::string& name) {
    setenv("TZ", name.c_str(), 1);
    tzset();
}

}  // namespace test
