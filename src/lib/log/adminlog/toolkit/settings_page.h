#pragma once

#include "log/adminlog/toolkit/statement_rows.h"
#include "log/adminlog/toolkit/translator.h"

#include <json/value.h>

#include <string>
#include <vector>

namespace serverlog::log::adminlog {

/// Stands before the label of the switch of a setting whose value has a label of its own.
inline constexpr char kStatusOf[] = "Status of ";

/// The same for the pages that on purpose have no blank there.
inline constexpr char kStatusOfWithoutBlank[] = "Status of";

/// DefaultDiff of the member `section` of the old state with the request. Null, and never an
/// exception, when that is no object.
Json::Value DiffSection(Json::Value const& old_info, std::string const& section,
                        Json::Value const& params);

/// MuggleTranslate for templates that name a changed setting without its values: each row holds the
/// label alone.
StatementRows ChangedLabels(Json::Value const& old_info, Json::Value const& params,
                            Json::Value const& diff, std::vector<Translator> const& translators);

}  // namespace serverlog::log::adminlog
