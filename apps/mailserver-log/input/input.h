#pragma once

#include <json/json.h>

#include <optional>
#include <string>
#include <string_view>

#include "process/unique_descriptor.h"

namespace serverlog::program {

/// Opens a file for reading; "-" is standard input. Throws Failure if it can't be opened.
UniqueDescriptor OpenInput(const std::string& path);

/// The whole of a file; "-" is standard input. Throws Failure if it can't be read.
std::string ReadInput(const std::string& path);

/// The value of a JSON document and nothing but that: no comma without a value behind it, no name
/// twice in an object, no comment, though jsoncpp overlooks one in front of a name. What is written
/// wrongly should not pass for something else.
///
/// @param error  receives what is wrong and where, on one line, if the text is none; it may quote
///               the text
std::optional<Json::Value> ParseJson(std::string_view text, std::string& error);

/// The same for a document that has to be one.
///
/// @param what  what the text is, for the message
///
/// Throws Failure if it is none, with the place of the first error.
Json::Value ParseDocument(std::string_view text, const std::string& what);

/// The JSON object in a file; "-" is standard input.
///
/// @param what  what the object is, for the message
///
/// Throws Failure if it can't be read or is none.
Json::Value ReadObject(const std::string& path, const std::string& what);

}  // namespace serverlog::program
