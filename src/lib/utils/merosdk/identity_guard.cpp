#include "utils/merosdk/identity_guard.h"

#include <syslog.h>

#include <string>

#include "utils/merosdk/runas_error.h"

namespace serverlog::utils {

namespace {

// The name under which readers of the system log know the switch.
constexpr char kName[] = "RUN_AS";

// Facility auth with the severities error and critical.
constexpr int kRefusedPriority = 0x23;
constexpr int kNoWayBackPriority = 0x22;

constexpr uid_t kKeepUid = static_cast<uid_t>(-1);
constexpr gid_t kKeepGid = static_cast<gid_t>(-1);

bool SwitchTo(const EffectiveIds& target) {
    const EffectiveIds now = EffectiveIds::Current();
    if (now == target) {
        return true;
    }
    // Only root may set ids that the process does not have yet.
    if (now.uid != 0 && now.uid != target.uid && !SetEffectiveUid(0)) {
        return false;
    }
    if (now.gid != target.gid && target.gid != kKeepGid && !SetEffectiveGid(target.gid)) {
        return false;
    }
    return now.uid == target.uid || target.uid == kKeepUid || SetEffectiveUid(target.uid);
}

}  // namespace

IdentityGuard::IdentityGuard(const EffectiveIds& target, const char* file, int line)
    : former_(EffectiveIds::Current()), target_(target), file_(file), line_(line) {
    if (SwitchTo(target_)) {
        return;
    }
    // A switch that got half way must not leave the process with rights that it did not have.
    SwitchTo(former_);
    const std::string text = std::string(kName) + "(" + std::to_string(target_.uid) + ", " +
                             std::to_string(target_.gid) + ")";
    syslog(kRefusedPriority, "%s:%d ERROR: %s", file_, line_, text.c_str());
    throw runas_error(text);
}

IdentityGuard::~IdentityGuard() {
    if (!SwitchTo(former_)) {
        syslog(kNoWayBackPriority, "%s:%d ERROR: ~%s(%d, %d)", file_, line_, kName, target_.uid,
               target_.gid);
    }
}

}  // namespace serverlog::utils
