#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The settings of the antivirus page and its mail templates. The info functions throw
/// Exception<ETag::SDK> when the web API fails.
namespace serverlog::log::adminlog::antivirus {

/// The settings as "anti_virus".
InfoSignature AntivirusInfo;

/// The mail templates: "delete_template", "quarantine_template".
InfoSignature TemplateInfo;

/// The change map of the settings.
DiffSignature DiffAntivirus;

/// The engine in words; empty for one that is not known.
FormatSignature EngineText;

/// What is done with an infected mail, in words; empty for any other value.
FormatSignature ActionText;

/// The time at which virus definitions are updated: hour and minute, whichever of the two `member`
/// names.
FormatSignature UpdateTimeText;

/// The time between two updates with its unit.
FormatSignature FrequencyText;

/// Changed settings: label, old, new.
TranslateSignature TranslateEdit;

/// The label of each changed mail template.
TranslateSignature TranslateTemplateEdit;

}  // namespace serverlog::log::adminlog::antivirus
