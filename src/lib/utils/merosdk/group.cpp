#include "utils/merosdk/group.h"

#include <mailserver-log/exception/exception.h>
#include <mero/group.h>
#include <mlibc/group.h>

namespace serverlog::utils {

void ZsmGroup::RecordFree::operator()(MEROGroup* record) const {
    MEROGroupFree(record);
}

ZsmGroup::ZsmGroup(unsigned int gid) : gid_(gid) {}

std::string ZsmGroup::GetGroupName() {
    if (!record_) {
        MEROGroup* record = nullptr;
        if (MEROGroupGetByGID(gid_, &record) < 0) {
            throw make_exception<ETag::SDK>(SDKError::GroupNameFail, std::to_string(gid_));
        }
        record_.reset(record);
    }
    return record_->name;
}

std::string ZsmGroup::GetGroupRealName() {
    const std::string name = GetGroupName();
    char real_name[257] = {};
    if (MLIBGroupRealNameGet(name.c_str(), real_name, sizeof real_name) != 0) {
        throw make_exception<ETag::SDK>(SDKError::GroupNameFail, name);
    }
    return real_name;
}

}  // namespace serverlog::utils
