#pragma once

#include "log/adminlog/toolkit/signatures.h"

namespace serverlog::log::adminlog {

/// A size limit in MB with its unit; "unlimited" for 0.
FormatSignature SizeLimitText;

/// A limit on a number of things; "unlimited" for 0.
FormatSignature CountLimitText;

}  // namespace serverlog::log::adminlog
