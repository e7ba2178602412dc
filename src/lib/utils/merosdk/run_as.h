#pragma once

#include <functional>
#include <string>

namespace serverlog::utils {

/// Runs `work` with other effective ids, and goes back to the former ones behind it, also when
/// `work` throws; what it throws passes through.
///
/// A switch that the system refuses is not reported to the caller: one line goes to the system log,
/// an error line behind it, and `work` does not run. So let `work` set a captured variable that
/// starts as false. Where the way back is refused only the line in the system log tells.
///
/// Effective ids belong to the whole process: every thread works under them while `work` runs, and
/// only one thread at a time may be in here.
///
/// @param name  names the work in the error line
/// @param uid   effective user id for `work`
/// @param gid   effective group id for `work`
void RunAs(const std::string& name, unsigned int uid, unsigned int gid,
           const std::function<void()>& work);

/// RunAs with user and group 0.
void RunAsRoot(const std::string& name, const std::function<void()>& work);

}  // namespace serverlog::utils
