#include "mero/group.h"

#include <cstdlib>
#include <cstring>

#include "common/name_service.h"

int MEROGroupGetByGID(unsigned int gid, MEROGroup** record) {
    if (record == nullptr) {
        return -1;
    }
    MEROGroup* made = nullptr;
    platform::LookUp(getgrgid_r, gid, [&](const group& found) {
        char* name = strdup(found.gr_name);
        made = static_cast<MEROGroup*>(std::malloc(sizeof(MEROGroup)));
        if (name == nullptr || made == nullptr) {
            std::free(name);
            std::free(made);
            made = nullptr;
            return;
        }
        *made = {name, found.gr_gid};
    });
    if (made == nullptr) {
        return -1;
    }
    *record = made;
    return 0;
}

void MEROGroupFree(MEROGroup* record) {
    if (record != nullptr) {
        std::free(record->name);
        std::free(record);
    }
}
