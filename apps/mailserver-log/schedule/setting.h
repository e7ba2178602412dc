#pragma once

#include <string>

#include "process/failure.h"

namespace serverlog::program {

/// A setting of the mail server; empty if it is not set. Throws Failure when the settings cannot be
/// read.
std::string ReadSetting(const std::string& key);

/// A setting that is a whole number from `least` to `most`; `missing` if it is not set. Throws
/// Failure when it is anything else.
long long ReadNumberSetting(const std::string& key, long long least, long long most,
                            long long missing);

/// What to throw for a setting that makes no sense; `wanted` tells what would.
Failure WrongSetting(const std::string& key, const std::string& value, const std::string& wanted);

}  // namespace serverlog::program
