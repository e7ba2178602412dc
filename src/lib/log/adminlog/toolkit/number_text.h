#pragma once

#include "log/adminlog/toolkit/signatures.h"

namespace serverlog::log::adminlog {

/// A number as the administrator wrote it, such as "0.1" where the member's own text would be
/// "0.10000000000000001"; any other value as its own text. Usable as Translator::format.
FormatSignature NumberText;

}  // namespace serverlog::log::adminlog
