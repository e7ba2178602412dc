#pragma once

#include "log/adminlog/toolkit/statement_rows.h"
#include "log/adminlog/toolkit/translator.h"

#include <json/value.h>

#include <string>
#include <vector>

namespace serverlog::log::adminlog {

/// The plain path for settings: each changed setting gives one row with its label, all of `args`,
/// the old text and the new text.
///
/// Rows come in the order of `translators`. A setting whose texts are equal gives none, and of
/// several translators with one label only the first that gives a row counts.
///
/// @param diff  the change map of DiffCollector
/// @param args  values that stand between label and old text in every row
///
/// Throws Json::LogicError when a value cannot be shown as text, and what the formats throw.
StatementRows MuggleTranslate(Json::Value const& old_info, Json::Value const& params,
                              Json::Value const& diff, std::vector<std::string> const& args,
                              std::vector<Translator> const& translators);

/// MuggleTranslate without args.
StatementRows MuggleTranslate(Json::Value const& old_info, Json::Value const& params,
                              Json::Value const& diff, std::vector<Translator> const& translators);

}  // namespace serverlog::log::adminlog
