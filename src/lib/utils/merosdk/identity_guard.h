#pragma once

#include "utils/merosdk/effective_ids.h"

namespace serverlog::utils {

/// Gives the process other effective ids for a scope.
///
/// The ids belong to the whole process: only one thread at a time may hold guards, and guards end
/// in the reverse order of their making.
class IdentityGuard {
 public:
    /// Switches to `target`.
    ///
    /// @param target  an id of -1 stays what it is
    /// @param file    source path for the lines in the system log; kept, so a literal
    /// @param line    source line for them
    /// @throws runas_error when the system refuses the switch, after a line in the system log; a
    ///         switch that got half way is undone
    IdentityGuard(const EffectiveIds& target, const char* file, int line);

    /// Switches back. Where the system refuses that, a line in the system log is all that tells.
    ~IdentityGuard();

    IdentityGuard(const IdentityGuard&) = delete;
    IdentityGuard& operator=(const IdentityGuard&) = delete;

 private:
    EffectiveIds former_;
    EffectiveIds target_;
    const char* file_;
    int line_;
};

}  // namespace serverlog::utils
