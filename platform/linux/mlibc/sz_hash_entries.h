#pragma once

#include <map>
#include <string>

/// What stands behind the table of <mlibc/sz_hash.h>.
struct MLIBCSzHash {
    std::map<std::string, std::string> entries;
};
