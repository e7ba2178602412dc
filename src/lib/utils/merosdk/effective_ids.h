#pragma once

#include <sys/types.h>
#include <unistd.h>

namespace serverlog::utils {

/// The ids that the system goes by when it decides what the process may do.
struct EffectiveIds {
    uid_t uid;
    gid_t gid;

    /// Those of the process at this moment.
    static EffectiveIds Current() { return {geteuid(), getegid()}; }

    bool operator==(const EffectiveIds& other) const {
        return uid == other.uid && gid == other.gid;
    }
};

/// Sets the effective user id alone: the real and the saved one stay and keep the way back open.
///
/// @return false when the system refuses it (setresuid(2))
inline bool SetEffectiveUid(uid_t uid) {
    return setresuid(static_cast<uid_t>(-1), uid, static_cast<uid_t>(-1)) == 0;
}

/// As SetEffectiveUid, for the group id (setresgid(2)).
inline bool SetEffectiveGid(gid_t gid) {
    return setresgid(static_cast<gid_t>(-1), gid, static_cast<gid_t>(-1)) == 0;
}

}  // namespace serverlog::utils
