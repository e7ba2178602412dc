#pragma once

#include "log/adminlog/toolkit/statement_rows.h"

#include <json/value.h>

#include <string>

namespace serverlog::log::adminlog {

/// Function types of a tab's functions; a header declares one with `TranslateSignature
/// TranslateEdit;`. What each does and when it is called stands at InfoFunction, DiffFunction,
/// TranslateFunction and Translator::format.
///
/// What an info or a diff function throws reaches the web API frame, but for Exception<ETag::Log>
/// and Exception<ETag::SDK> of an info function; so those read what a request holds with
/// tolerant_reading.h. What a translate function or a format throws costs the template's statements
/// and an error line.
///
/// Each translate function answers the templates that it knows and ignores any other.
using InfoSignature = Json::Value(Json::Value const& params);
using DiffSignature = Json::Value(Json::Value& old_info, Json::Value& params);
using TranslateSignature = StatementRows(std::string const& statement, Json::Value const& old_info,
                                         Json::Value const& params, Json::Value const& diff,
                                         Json::Value const& body);
using FormatSignature = std::string(std::string const& member, Json::Value const& object);

}  // namespace serverlog::log::adminlog
