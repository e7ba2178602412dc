#pragma once

#include <mlibc/sz_list.h>

/// What MLIBCFileEnumDir selects and how it names it. The library asks for both: 130.
enum MLIBCEnumFlag : int {
    MLIBC_ENUM_REGULAR_FILES = 2,  ///< only regular files; a link is none, whatever it leads to
    MLIBC_ENUM_FULL_PATH = 128,    ///< entries carry the folder's path, else they are bare names
};

/// Adds the entries of a folder whose names begin with a prefix to a list, sorted by the bytes of
/// their names. "." and ".." are never among them.
///
/// @param folder  the folder, with or without a slash at its end
/// @param prefix  beginning of the names, compared byte by byte; empty takes all
/// @param list    the list to add to; what it held stays in front
/// @param flags   values of MLIBCEnumFlag joined by "or"; others are refused
/// @return number of entries added; -1 when the folder cannot be read, memory is short, a pointer
///         is null or a flag is unknown. The list is then as it was.
int MLIBCFileEnumDir(const char* folder, const char* prefix, MLIBCSzList** list, int flags);

/// Whether there is something of this name, links followed. False as well when that cannot be found
/// out. A false result keeps its reason for MLIBCErrGet.
bool MLIBCFileExist(const char* path);
