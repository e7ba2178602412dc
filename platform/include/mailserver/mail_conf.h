#pragma once

#include <string>

/// @file
/// Settings of the mail server, kept in `/var/packages/PostCube-Server/etc/mailserver.conf` as
/// lines `key="value"` with a backslash before each double quote and each backslash of the value.
/// Blank lines and lines that begin with "#" are comments. Of a repeated key the last line counts.
///
/// Readers share a lock on the folder and a writer has it alone, so that two writers never lose
/// each other's change; a writer replaces the file in one step, so that nobody, not even after a
/// loss of power, finds half of it. What goes wrong is written to the mail log at warning level.
/// Safe to call from several threads and processes at once.

/// Reads a setting.
///
/// @param key    name of the setting
/// @param value  receives the value; empty when the key or the whole file is missing
/// @return 0; -1 when the file cannot be read or holds a line that is no setting. `value` is then
///         untouched.
int mailConfGet(const std::string& key, std::string& value);

/// Writes a setting: in the place of its old line, else behind all others. Comments, order, owner
/// and mode of the file stay; a missing file is made with its folder, readable by all.
///
/// @param key       name of the setting: letters, digits, "_", "-" and "."
/// @param value     value in one line: no line feed, carriage return or NUL
/// @param announce  true also tells the change, without the value, in the mail log at notice level:
///                  for what an administrator would set; false for a program's own book-keeping
/// @param flags     0; no flag is known, and any other value is refused
/// @return 0 once the value is on the disk; -1 when an argument is refused, the old file cannot be
///         read or holds a line that is no setting, or the new one cannot be written. The file is
///         then as it was, but for a failure to sync its folder, when either may be found.
int mailConfSet(const std::string& key, const std::string& value, bool announce, int flags);
