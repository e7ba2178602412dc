#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace serverlog::program {

/// Adds the argument that names stores.
void AddStores(CLI::App& command, std::vector<std::string>& names);

/// The stores that were named, or all of them if none was.
std::vector<std::string> OrAllStores(std::vector<std::string> names);

/// Does one step on stores, one after the other, whatever became of those before, and writes a line
/// for each: "mail: rotated", or "mail: failed".
///
/// @param names  the stores
/// @param done   the word for a step that is done
/// @param step   does it on the store of that name; false or an exception when it failed
///
/// Throws Failure at the end if it failed on a store.
void RunOnStores(const std::vector<std::string>& names, const std::string& done,
                 const std::function<bool(const std::string& name)>& step);

}  // namespace serverlog::program
