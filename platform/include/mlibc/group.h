#pragma once

/// Gives the real name of a group: its name as the system's group database (NSS) spells it, which
/// may differ from the given one where a directory service looks names up without regard to case.
///
/// @param name    name of the group
/// @param buffer  receives the real name with a terminating NUL
/// @param size    room in `buffer` in bytes, the NUL included
/// @return 0; -1 when there is no such group, the name does not fit or a pointer is null. `buffer`
///         is then untouched.
///
/// Safe to call from several threads at once.
int MLIBGroupRealNameGet(const char* name, char* buffer, int size);
