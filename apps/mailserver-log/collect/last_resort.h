#pragma once

#include <ostream>
#include <vector>

#include "collect/rejected_log.h"
#include "input/message_source.h"

namespace serverlog::program {

/// Keeps lines that nobody else has and that could not be stored before the end: in the log of
/// rejected lines, and the source is told that they are stored; or, if even that fails, on `talk`.
///
/// @return whether they are in the log
bool KeepInstead(const RejectedLog& rejected_log, const std::vector<Rejection>& rejections,
                 MessageSource& source, std::ostream& talk);

}  // namespace serverlog::program
