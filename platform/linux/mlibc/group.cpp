#include "mlibc/group.h"

#include <cstring>

#include "common/name_service.h"

int MLIBGroupRealNameGet(const char* name, char* buffer, int size) {
    if (name == nullptr || buffer == nullptr || size <= 0) {
        return -1;
    }
    bool fits = false;
    platform::LookUp(getgrnam_r, name, [&](const group& found) {
        const std::size_t needed = std::strlen(found.gr_name) + 1;
        fits = needed <= static_cast<std::size_t>(size);
        if (fits) {
            std::memcpy(buffer, found.gr_name, needed);
        }
    });
    return fits ? 0 : -1;
}
