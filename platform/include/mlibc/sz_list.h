#pragma once

/// A list of C strings. Made by MLIBCSzListAlloc, filled by the functions that take one, read
/// through its members, freed as a whole by MLIBCSzListFree. One thread uses it at a time.
struct MLIBCSzList {
    int count;     ///< number of strings
    char** items;  ///< the strings, owned by the list
    int capacity;  ///< number of strings that `items` has room for
};

/// Makes an empty list.
///
/// @param size  number of strings to make room for at first, above 0; the list grows beyond it
/// @return the list, owned by the caller; null when memory is short or `size` is not above 0
MLIBCSzList* MLIBCSzListAlloc(int size);

/// Frees a list with its strings. Null is allowed.
void MLIBCSzListFree(MLIBCSzList* list);
