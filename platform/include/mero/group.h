#pragma once

/// A group of the system's group database.
struct MEROGroup {
    char* name;        ///< name of the group, owned by the record
    unsigned int gid;  ///< its number
};

/// Looks a group up by its number (NSS).
///
/// @param gid     number of the group
/// @param record  receives the record, which MEROGroupFree frees
/// @return 0; -1 when there is no such group, the database cannot be read or memory is short.
///         `record` is then untouched.
///
/// Safe to call from several threads at once.
int MEROGroupGetByGID(unsigned int gid, MEROGroup** record);

/// Frees a record of MEROGroupGetByGID. Null is allowed.
void MEROGroupFree(MEROGroup* record);
