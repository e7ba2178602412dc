#pragma once

#include <map>
#include <string>

namespace platform {

/// Reads a query string or the body of a form: pieces of key=value with "&" between them, blanks as
/// "+" and any byte as "%" with two hexadecimal digits (WHATWG URL Standard, chapter 5.1; without
/// its last step, so the bytes need not be UTF-8). Every text can be read.
///
/// @param fields  gets the fields; one that it holds already is replaced
void ReadFormText(const std::string& text, std::map<std::string, std::string>& fields);

}  // namespace platform
