#include "mailserver/user.h"

#include "common/name_service.h"

int getRealUserName(unsigned int id, std::string& name) {
    const bool found =
        platform::LookUp(getpwuid_r, id, [&](const passwd& user) { name = user.pw_name; });
    return found ? 0 : -1;
}
