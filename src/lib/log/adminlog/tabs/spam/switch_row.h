#pragma once

#include "log/adminlog/toolkit/statement_rows.h"

#include <json/value.h>

#include <string>

namespace serverlog::log::adminlog::spam {

/// The row of a switch that was turned: what it belongs to, its old and its new status. The old one
/// is the opposite of the new one.
///
/// @param entry  the request's entry, which holds the new status under `key`
StatementRow SwitchRow(std::string const& name, Json::Value const& entry, std::string const& key);

}  // namespace serverlog::log::adminlog::spam
