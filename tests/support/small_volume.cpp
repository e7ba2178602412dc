#include "support/small_volume.h"

#include <sys/mount.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace test {

namespace {

constexpr long kPlenty = 16 << 20;

}  // namespace

SmallVolume::SmallVolume(const std::string& folder)
    : folder_(std::filesystem::canonical(folder).string()), mounted_(Mount(0, kPlenty)) {}

SmallVolume::~SmallVolume() {
    if (mounted_) {
        umount2(folder_.c_str(), MNT_DETACH);
    }
}

void SmallVolume::Limit(long room) const {
    const std::filesystem::space_info space = std::filesystem::space(folder_);
    const auto used = static_cast<long>(space.capacity - space.available);
    // A size of 0 would be none at all.
    if (!Mount(MS_REMOUNT, room < 0 ? kPlenty : std::max(used + room, 1L))) {
        throw std::runtime_error("remount " + folder_);
    }
}

bool SmallVolume::Mount(unsigned long flags, long size) const {
    const std::string options = "size=" + std::to_string(size) + ",mode=0755";
    return mount("tmpfs", folder_.c_str(), "tmpfs", flags, options.c_str()) == 0;
}

}  // namespace test
