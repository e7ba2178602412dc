#pragma once

namespace platform {

/// Keeps what MLIBCErrGet and its companions tell of this thread.
///
/// @param code  as errno(3)
/// @param file  a literal
void SetLastError(int code, const char* file, int line);

}  // namespace platform

/// SetLastError with the place where it stands.
#define PLATFORM_SET_LAST_ERROR(code) ::platform::SetLastError(code, __FILE__, __LINE__)
