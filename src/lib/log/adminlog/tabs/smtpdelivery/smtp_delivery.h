#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// How mail leaves this machine: directly, through one relay host or through several relay servers.
namespace serverlog::log::adminlog::smtpdelivery {

/// The settings of the single relay host. The password, which the web API does not tell, counts as
/// empty, so that one in the request counts as a change. Throws Exception<ETag::SDK> when the web
/// API fails.
InfoSignature DeliveryInfo;

/// The changed type of delivery and settings of the single relay host, by template: label, old,
/// new. Of a changed password only the label is in a row.
TranslateSignature TranslateEdit;

/// The label of the rules of several relay servers that "list_type" names, "recipient" or "sender".
TranslateSignature TranslateDeliveryServerEdit;

}  // namespace serverlog::log::adminlog::smtpdelivery
