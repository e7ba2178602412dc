#pragma once

#include <string>
#include <vector>

namespace serverlog::endpoint {

/// A method that a handler of the settings pages carries out.
struct SettingsMethod {
    std::string api;
    std::string method;
    std::string operation;  ///< key in the table of operations; empty for one that is not logged
};

/// One for each operation of the table of operations, in its order.
std::vector<SettingsMethod> LoggedMethods();

/// Those that only read settings, which no operation stands for.
std::vector<SettingsMethod> ReadingMethods();

}  // namespace serverlog::endpoint
