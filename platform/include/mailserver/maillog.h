#pragma once

/// Writes one line to the mail log stream (syslog, facility mail).
///
/// @param level   severity as in syslog(3), 0 to 7; the library passes 3 (error) and nothing else
/// @param format  printf format, followed by its arguments; longer results than the system log
/// takes
///                are cut there
///
/// Never fails towards the caller: a line that the system log does not take is lost. Safe to call
/// from several threads at once.
void maillog(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));
