#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace serverlog::program {

/// Looks whether a store of the product can be opened now.
///
/// Opening creates or upgrades it, and waits a minute for a lock. A collector has to answer before
/// that, and wants to know of a lock or a full disk by its name. So this comes first.
///
/// @param path     the store, which may be missing
/// @param patience how long to wait for a lock
///
/// Throws soci::soci_error if the store is locked or can't be read, Failure if it has no tables yet
/// and the disk has no room for them.
void CheckStore(const std::string& path, std::chrono::milliseconds patience);

/// Throws Failure, with what to do about it, if the folder of the stores does not exist or this
/// process may not write to it or to one of the files, so that a machine that is not set up shows
/// at once. A file that is missing is no fault.
void CheckWriteAccess(const std::vector<std::string>& paths);

}  // namespace serverlog::program
