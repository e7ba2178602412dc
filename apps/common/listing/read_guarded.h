#pragma once

#include <string>

#include "process/failure.h"

namespace serverlog::program {

/// Does work that reads the rows of a store, and gives its result.
///
/// @param path  the store
///
/// Throws Failure that names the store, whatever the work throws.
template <class Work>
auto ReadGuarded(const std::string& path, Work work) {
    try {
        return work();
    } catch (...) {
        throw Failure("cannot read all of " + path + ": " + DescribeException() +
                      "; see the mail log, and try again");
    }
}

}  // namespace serverlog::program
