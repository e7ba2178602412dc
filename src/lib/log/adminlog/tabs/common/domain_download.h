#pragma once

#include "log/adminlog/toolkit/signatures.h"

namespace serverlog::log::adminlog {

/// For exports of a domain's data: the record of the domain "domain_id" with "force_log" true.
/// Throws Exception<ETag::SDK> when the web API fails.
InfoSignature DomainDownload;

}  // namespace serverlog::log::adminlog
