#pragma once

#include <json/value.h>

#include <string>
#include <vector>

namespace serverlog::log::adminlog {

/// The values of one statement: element i replaces the placeholder %i%.
using StatementRow = std::vector<std::string>;

/// One row for each statement that a template yields, in the order of writing.
using StatementRows = std::vector<StatementRow>;

/// No statement.
StatementRows Ignore();

/// One statement whose placeholders stay as they are.
StatementRows NoReplace();

/// A TranslateFunction: one row with the name that the request gives, the parameter "name".
StatementRows IntuitionNewName(std::string const& statement, Json::Value const& old_info,
                               Json::Value const& params, Json::Value const& diff,
                               Json::Value const& body);

/// A TranslateFunction: one row with the name before the call, "name" of the old state.
StatementRows IntuitionPastName(std::string const& statement, Json::Value const& old_info,
                                Json::Value const& params, Json::Value const& diff,
                                Json::Value const& body);

}  // namespace serverlog::log::adminlog
