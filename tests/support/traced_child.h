#pragma once

#include <cstddef>
#include <functional>

namespace test {

/// Runs `work` in a process of its own and kills that with SIGKILL right before its change number
/// `change`: a change is a system call that makes, writes, cuts, renames, removes or syncs a file,
/// or sets its owner or mode. Threads and children of the process are not looked at.
///
/// @return the number of changes that were made: `change`, or fewer when the work was done before.
///         Throws std::runtime_error where a process may not be traced, or when it ended otherwise.
std::size_t KillBeforeChange(const std::function<void()>& work, std::size_t change);

/// The number of changes that `work` makes, done in a process of its own.
std::size_t CountChanges(const std::function<void()>& work);

}  // namespace test
