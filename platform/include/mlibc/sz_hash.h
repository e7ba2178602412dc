#pragma once

/// A table from C string to C string. Made by MLIBCSzHashAlloc, filled by MLIBCSzHashSetValue,
/// freed as a whole by MLIBCSzHashFree. One thread uses it at a time.
struct MLIBCSzHash;

/// Makes an empty table.
///
/// @param size  number of entries to make room for at first, above 0; the table grows beyond it
/// @return the table, owned by the caller; null when memory is short or `size` is not above 0
MLIBCSzHash* MLIBCSzHashAlloc(int size);

/// Sets the value of a key, in place of an older one. Both texts are copied.
///
/// @param hash   address of the table
/// @param key    the key, compared byte by byte
/// @param value  its value
/// @return 0; -1 when memory is short or a pointer is null. The table is then as it was.
int MLIBCSzHashSetValue(MLIBCSzHash** hash, const char* key, const char* value);

/// Frees a table with its entries. Null is allowed.
void MLIBCSzHashFree(MLIBCSzHash* hash);
