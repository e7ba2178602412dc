#pragma once

#include <string>

namespace platform {

/// Outcome of ReadText.
enum class ReadOutcome { Read, Missing, Failed };

/// Reads a whole file.
///
/// @param path  the file
/// @param text  receives its bytes; of use only with ReadOutcome::Read
/// @return Missing when there is no such file or folder. With Failed, errno tells why.
ReadOutcome ReadText(const std::string& path, std::string& text);

/// Writes all bytes of a text to a descriptor.
///
/// @return false on failure, errno tells why
bool WriteText(int descriptor, const std::string& text);

}  // namespace platform
