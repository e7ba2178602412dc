#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The network interface that the mail cluster uses.
namespace serverlog::log::adminlog::service {

/// This machine's "interface" and its "ip", from the mail cluster itself; calls no web API.
InfoSignature InterfaceInfo;

/// The change map. The word "pppoe" as the request's "interface" is replaced by the name of the
/// PPPoE interface, if there is one; so the name shows up among the call's parameters.
DiffSignature DiffInterface;

/// The changed interface: label, old, new, both as InterfaceDisplay shows them.
TranslateSignature TranslateEditInterface;

}  // namespace serverlog::log::adminlog::service
