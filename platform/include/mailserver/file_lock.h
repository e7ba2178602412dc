#pragma once

#include <mlibc/types.h>

/// Takes the exclusive lock on a lock file and holds it until the descriptor is closed, at the
/// latest by the end of the process. The lock (flock(2)) holds between processes and between
/// descriptors of one process alike, so who takes it twice waits for itself.
///
/// The file is made where it is missing, with its folders; it stays when the lock is released. The
/// descriptor closes on exec, but a child made by fork(2) alone holds the lock along.
///
/// @param path  the lock file; reading it must be allowed, nothing is written to it
/// @param flag  not 0 waits until the lock is free, without a limit; 0 gives up at once
/// @param fd    receives the descriptor, which pscFileUnlockByFile takes back
/// @return false when the file cannot be opened or made, when it is a folder, when the lock is
///         held elsewhere and `flag` is 0, or when a pointer is null; `*fd` is then untouched,
///         and MLIBCErrGet tells the reason
///
/// Safe to call from several threads at once.
bool pscFileLockByFile(const char* path, BOOL flag, int* fd);

/// Releases a lock and closes its descriptor.
///
/// @param fd  descriptor of pscFileLockByFile
/// @return false when it is no open descriptor; see MLIBCErrGet
bool pscFileUnlockByFile(int fd);
