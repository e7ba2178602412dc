#include "mlibc/sz_hash.h"

#include <new>

#include "mlibc/sz_hash_entries.h"

MLIBCSzHash* MLIBCSzHashAlloc(int size) {
    return size > 0 ? new (std::nothrow) MLIBCSzHash : nullptr;
}

int MLIBCSzHashSetValue(MLIBCSzHash** hash, const char* key, const char* value) {
    if (hash == nullptr || *hash == nullptr || key == nullptr || value == nullptr) {
        return -1;
    }
    try {
        (*hash)->entries.insert_or_assign(key, value);
        return 0;
    } catch (const std::bad_alloc&) {
        return -1;
    }
}

void MLIBCSzHashFree(MLIBCSzHash* hash) {
    delete hash;
}
