#pragma once

#include <json/value.h>

#include <ostream>

namespace serverlog::program {

/// Writes the reply to a web API call, as MERO::APIResponse::Reply gives it, in one line and with
/// its members in the order that clients know.
void WriteReply(std::ostream& out, const Json::Value& reply);

}  // namespace serverlog::program
