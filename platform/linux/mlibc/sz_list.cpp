#include "mlibc/sz_list.h"

#include <cstdlib>

MLIBCSzList* MLIBCSzListAlloc(int size) {
    if (size <= 0) {
        return nullptr;
    }
    auto* list = static_cast<MLIBCSzList*>(std::malloc(sizeof(MLIBCSzList)));
    if (list == nullptr) {
        return nullptr;
    }
    *list = {0, static_cast<char**>(std::malloc(static_cast<std::size_t>(size) * sizeof(char*))),
             size};
    if (list->items == nullptr) {
        std::free(list);
        return nullptr;
    }
    return list;
}

void MLIBCSzListFree(MLIBCSzList* list) {
    if (list == nullptr) {
        return;
    }
    for (int index = 0; index < list->count; ++index) {
        std::free(list->items[index]);
    }
    std::free(list->items);
    std::free(list);
}
