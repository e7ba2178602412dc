#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The settings of the MCP page and its mail template. The info functions throw
/// Exception<ETag::SDK> when the web API fails.
namespace serverlog::log::adminlog::mcp {

/// The settings, with "mcp_radio_action" made of "enable_delete", "enable_store" and
/// "enable_deliver", since a request holds one choice in place of the three: the last of them that
/// is true, or the empty text.
InfoSignature McpInfo;

/// The mail template: "admin_addr", "subject", "content".
InfoSignature BounceTemplateInfo;

/// What is done with a matching mail, in words; empty for any other value.
FormatSignature ActionText;

/// Changed settings: label, old, new.
TranslateSignature TranslateEdit;

/// The label of each changed field of the mail template.
TranslateSignature TranslateBounceTemplateEdit;

}  // namespace serverlog::log::adminlog::mcp
