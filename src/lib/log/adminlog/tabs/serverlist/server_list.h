#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The servers of the mail cluster and the address that they share.
namespace serverlog::log::adminlog::serverlist {

/// The shared address: "balancer_address" and "balancer_netmask". Throws Exception<ETag::SDK> when
/// the web API fails.
InfoSignature ClusterInfo;

/// Changes of the shared address: label, old, new.
TranslateSignature TranslateEdit;

/// "server" and "volume" of "member_info", and "balancer_address" of "balancer_info".
TranslateSignature TranslateAdd;

/// The removed "server".
TranslateSignature TranslateDel;

}  // namespace serverlog::log::adminlog::serverlist
