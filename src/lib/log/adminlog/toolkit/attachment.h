#pragma once

#include <json/value.h>

#include <string>

namespace serverlog::log::adminlog {

/// The "name" of the attachment of a mail whose "id" is `id`; `id` itself when the mail has no such
/// attachment, so that a download can be told in any case.
///
/// Throws Json::LogicError when an element of `attachments` is no object.
std::string AttachmentName(Json::Value const& attachments, std::string const& id);

}  // namespace serverlog::log::adminlog
