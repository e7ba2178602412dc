#pragma once

#include <string>

/// Replaces the five characters of HTML markup by entities: "&" by "&amp;", "<" by "&lt;", ">" by
/// "&gt;", the double quote by "&quot;" and the single one by "&#39;". The result is safe as text
/// and inside a quoted attribute.
std::string HtmlStrEscape(const std::string& text);
