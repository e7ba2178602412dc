#pragma once

#include <string>

/// Gives a file or a folder to a user with the user's first group, and sets its mode.
///
/// @param path  the file or folder. A link in its last place is refused: the folder may belong to
///              somebody who must not choose what a privileged process hands over.
/// @param user  name of the user
/// @param mode  permission bits, such as 0644
/// @return 0; -1 when there is no such file or user, or the process has not the right. The owner
///         may then have changed and the mode not.
int mailFileOwnerModeSet(const std::string& path, const std::string& user, unsigned int mode);

/// Whether `path` is a folder or a link to one. False as well when that cannot be found out.
bool pcsDirectoryExist(const std::string& path);

/// The time of a file's last change in seconds since the epoch, links followed; 0 when there is no
/// such file or its time cannot be had.
long pcsGetFileMtime(const std::string& path);
