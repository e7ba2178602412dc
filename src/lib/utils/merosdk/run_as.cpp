#include "utils/merosdk/run_as.h"

#include <mailserver-log/utils/error_line.h>

#include "utils/merosdk/effective_ids.h"
#include "utils/merosdk/identity_guard.h"
#include "utils/merosdk/runas_error.h"

namespace serverlog::utils {

namespace {

// Who may take on any ids.
constexpr EffectiveIds kRoot = {0, 0};

// The guards are gone when this runs: the effective ids in the line are those that the process has
// come back to.
void WriteRefused(const std::string& name, const EffectiveIds& wanted) {
    const EffectiveIds now = EffectiveIds::Current();
    SERVERLOG_ERROR_LINE("RunAS failed: [%s] uid:%d gid:%d euid:%d egid:%d", name.c_str(),
                         wanted.uid, wanted.gid, now.uid, now.gid);
}

// Goes to `ids` by way of root, from where any ids can be reached, and back the same way: also from
// one ordinary user to another.
//
// The guards write their places into the system log when a switch is refused, and readers of the
// log know them as lines 30 and 39 of this file. Keep them there.
void WorkWithIds(const EffectiveIds& ids, const std::function<void()>& work) {
    const IdentityGuard root_guard(kRoot, __FILE__, __LINE__);
    if (ids == kRoot) {
        work();
        return;
    }

    // A guard of its own, so that the way back also passes through root. With root's effective ids
    // this switch is refused only to a process that lacks the capabilities which root has elsewhere
    // (capabilities(7)).
    const IdentityGuard target_guard(ids, __FILE__, __LINE__);
    work();
}

}  // namespace

void RunAs(const std::string& name, unsigned int uid, unsigned int gid,
           const std::function<void()>& work) {
    const EffectiveIds ids = {uid, gid};
    if (EffectiveIds::Current() == ids) {
        work();
        return;
    }
    try {
        WorkWithIds(ids, work);
    } catch (const runas_error&) {
        WriteRefused(name, ids);
    }
}

void RunAsRoot(const std::string& name, const std::function<void()>& work) {
    RunAs(name, 0, 0, work);
}

}  // namespace serverlog::utils
