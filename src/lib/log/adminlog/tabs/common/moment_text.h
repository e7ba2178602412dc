#pragma once

#include "log/adminlog/toolkit/signatures.h"

namespace serverlog::log::adminlog {

/// A point in time: seconds since the epoch as local time, such as "2026-11-22 10:00:00"; a text
/// as it is, since dates come as texts too.
FormatSignature MomentText;

}  // namespace serverlog::log::adminlog
