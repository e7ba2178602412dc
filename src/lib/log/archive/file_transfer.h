#pragma once

#include <string>

namespace serverlog::log::archive {

/// Copies or moves a database with the files `-wal` and `-shm` beside it, as far as they exist, to
/// a folder. No file there is replaced by an older one; files that an earlier copy of the database
/// left beside itself go with it.
///
/// @param path    the database; must exist
/// @param dest    the folder
/// @param prefix  stands before the files' names there
/// @param move    moves instead of copying
/// @return false, with an error line, when a file could not be taken there, which then stays as it
///         was. When that is the database, the files beside it stay with it.
bool CopyWithSidecars(const std::string& path, const std::string& dest, const std::string& prefix,
                      bool move);

/// Copies a store's file to a folder, as CopyWithSidecars does. A missing file is fine.
///
/// Throws Exception<ETag::FileSystem> when the file can't be looked at.
bool CopyDbFile(const std::string& path, const std::string& dest);

/// Copies the current plain text mail log to a folder, unless there is a younger one. A missing
/// file is fine. False, with an error line, when it could not be copied.
///
/// Throws Exception<ETag::FileSystem> when the file can't be looked at.
bool CopyPlainMailLog(const std::string& dest);

/// Copies the older plain text mail logs that were written since the time in the settings to a
/// folder, and notes the newest of their times there. With nothing noted, since a week ago.
///
/// @return false, with an error line, when that time, a file's time or the folder can't be read, or
///         a file not be copied; the time then stays
bool CopyPlainMailLogs(const std::string& dest);

}  // namespace serverlog::log::archive
