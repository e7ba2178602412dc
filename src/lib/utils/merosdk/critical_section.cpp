#include "utils/merosdk/critical_section.h"

#include <syslog.h>

#include <cerrno>

namespace serverlog::utils {

namespace {

// Facility auth with the severities information and error.
constexpr int kDonePriority = 38;
constexpr int kRefusedPriority = 35;

// Sets what differs. The group goes first: on the way back root's user id is still there to set it.
bool Change(const EffectiveIds& from, const EffectiveIds& to) {
    return (from.gid == to.gid || SetEffectiveGid(to.gid)) &&
           (from.uid == to.uid || SetEffectiveUid(to.uid));
}

}  // namespace

CriticalSection::CriticalSection(const char* file, int line)
    : former_(EffectiveIds::Current()), file_(file), line_(line) {
    Report(Change(former_, {0, 0}), "ENTER");
}

CriticalSection::~CriticalSection() {
    Report(Change(EffectiveIds::Current(), former_), "LEAVE");
}

void CriticalSection::Report(bool done, const char* step) const {
    if (done) {
        syslog(kDonePriority, "%s:%d %sCriticalSection", file_, line_, step);
    } else {
        syslog(kRefusedPriority, "%s:%d ERROR: %sCriticalSection", file_, line_, step);
    }
    errno = done ? 0 : 1;  // behind the line, which may change it
}

}  // namespace serverlog::utils
