#pragma once

#include "log/adminlog/toolkit/signatures.h"

namespace serverlog::log::adminlog::spam {

/// A score of the spam filter: the name of the level that has it and the score, such as
/// "Standard (5)", or the score alone. Which scores are levels depends on the setting that `member`
/// names. "5" and 5.0 are one score.
FormatSignature ScoreText;

}  // namespace serverlog::log::adminlog::spam
