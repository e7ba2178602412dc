#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// Which server of the mail cluster leads it.
namespace serverlog::log::adminlog::serverlist {

/// The servers with "role_info": "server_list", whose servers have "ip" and "server_name", and the
/// address of the leading one as "cluster_master". The list may be an object by address too. Throws
/// Exception<ETag::SDK> when the web API fails.
InfoSignature ClusterRoleInfo;

/// What a request changes that gives the role "balancer" or "cluster_master" to the server "ip":
/// "old" and "new" hold the leading server before and after as "role", "changes" is their change
/// map. Null for any other role, and when either server is not known.
DiffSignature DiffClusterRole;

/// The changed leading server: label, old, new.
TranslateSignature TranslateClusterRoleEdit;

}  // namespace serverlog::log::adminlog::serverlist
