#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The services of the mail server. Info functions load the settings and throw Exception<ETag::SDK>
/// when the web API fails; statements are changed settings: label, old, new.
namespace serverlog::log::adminlog::service {

/// Settings of SMTP.
InfoSignature SmtpInfo;

/// Settings of IMAP and POP3.
InfoSignature ImapPop3Info;

/// Advanced settings of IMAP and POP3.
InfoSignature ImapPop3AdvInfo;

/// Settings of the full-text search.
InfoSignature FtsInfo;

/// For SmtpInfo.
TranslateSignature TranslateEdit;

/// For ImapPop3Info.
TranslateSignature TranslateEditImapPop3;

/// For ImapPop3AdvInfo, with a template of its own.
TranslateSignature TranslateEditImapPop3Adv;

/// For FtsInfo.
TranslateSignature TranslateEditFts;

}  // namespace serverlog::log::adminlog::service
