#pragma once

#include "utils/merosdk/effective_ids.h"

namespace serverlog::utils {

/// Gives the process the effective ids of root for a scope, and tells both ends in the system log.
///
/// Unlike IdentityGuard it goes on with the ids that it has where the system refuses the switch.
/// Both ends set errno: 0 when done, 1 when refused.
///
/// The ids belong to the whole process: only one thread at a time may be in a section.
class CriticalSection {
 public:
    /// @param file  source path for the lines in the system log; kept, so a literal
    /// @param line  source line for them
    CriticalSection(const char* file, int line);
    ~CriticalSection();
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

 private:
    void Report(bool done, const char* step) const;

    EffectiveIds former_;
    const char* file_;
    int line_;
};

}  // namespace serverlog::utils
