#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The settings of the spam filter.
namespace serverlog::log::adminlog::spam {

/// The settings as "spamassassin". Throws Exception<ETag::SDK> when the web API fails.
InfoSignature SpamInfo;

/// The change map of the settings.
DiffSignature DiffSpam;

/// The engine in words; empty for one that is not known.
FormatSignature SpamEngineText;

/// How spam is delivered, in words; empty for any other value.
FormatSignature ReportText;

/// The time at which rules are updated. As AutoLearnTimeText it shows hour and minute, whichever of
/// the two `member` names.
FormatSignature RuleUpdateTimeText;

/// The time at which reported mails are learned.
FormatSignature AutoLearnTimeText;

/// Changed settings: label, old, new.
TranslateSignature TranslateEdit;

}  // namespace serverlog::log::adminlog::spam
