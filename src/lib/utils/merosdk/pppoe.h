#pragma once

#include <string>

namespace serverlog::utils {

/// The name of the network interface that is a PPPoE connection; empty when there is none.
std::string PPPoeInterface();

}  // namespace serverlog::utils
