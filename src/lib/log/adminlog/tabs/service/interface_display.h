#pragma once

#include "log/adminlog/toolkit/signatures.h"

namespace serverlog::log::adminlog::service {

/// A network interface as administrators know it, such as "LAN 1 (10.0.0.1)" for `eth0`.
///
/// @param member  the member of `object` that holds the interface's name
/// @param object  "ip" is the interface's address; without one it is this machine's
/// @return "(unknow) " and the address for a name that means nothing, after an error line when it
///         has no usable number; never throws
FormatSignature InterfaceDisplay;

}  // namespace serverlog::log::adminlog::service
