#pragma once

/// Turns UTF-8 text to upper case by the full mapping of Unicode, the same in every locale; the
/// result may be longer than the text ("ß" becomes "SS").
///
/// @param in    text with a terminating NUL
/// @param out   receives the result with a terminating NUL; must not overlap `in`
/// @param size  room in `out` in bytes, the NUL included
/// @return length of the result in bytes; -1 when `in` is no valid UTF-8, when `out` is too small
///         or when a pointer is null. `out` then holds nothing of use.
///
/// Safe to call from several threads at once.
int MLIBCUnicodeUTF8StrUpper(const char* in, char* out, int size);
