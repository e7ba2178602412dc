#pragma once

#include <json/json.h>

#include <string>

#include "process/unique_descriptor.h"

namespace serverlog::program {

/// Opens a file for reading; "-" is standard input. Throws Failure if it can't be opened.
UniqueDescriptor OpenInput(const std::string& path);

/// The whole of a file; "-" is standard input. Throws Failure if it can't be read.
std::string ReadInput(const std::string& path);

/// Parses a JSON document and nothing but that.
///
/// @param what  what the text is, for the message
///
/// Throws Failure if it is none, with the place of the first error.
Json::Value ParseDocument(const std::string& text, const std::string& what);

/// The JSON object in a file; "-" is standard input.
///
/// @param what  what the object is, for the message
///
/// Throws Failure if it can't be read or is none.
Json::Value ReadObject(const std::string& path, const std::string& what);

}  // namespace serverlog::program
