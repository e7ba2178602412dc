#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// Postscreen and its DNSBL servers. A request holds the whole list of servers as
/// "dnsbl_server_list".
namespace serverlog::log::adminlog::spam {

/// The settings, and the servers by "server" as "indexed_dnsbl_servers". Throws
/// Exception<ETag::SDK> when the web API fails.
InfoSignature PostscreenInfo;

/// The change map of the settings with the difference of the list of servers (list_diff.h).
DiffSignature DiffPostscreen;

/// By template: each server that came or went; the changed threshold; the changed score of a
/// server, which goes by its own name.
TranslateSignature TranslatePostscreenOperation;

}  // namespace serverlog::log::adminlog::spam
