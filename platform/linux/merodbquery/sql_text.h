#pragma once

#include <string>
#include <vector>

namespace merodbquery {

/// Gives `name` back when it is letters, digits and underscores with no digit in front, or several
/// of these with points between them; soci::soci_error otherwise.
///
/// Names are checked and not quoted: SQLite takes a quoted name that it does not know for a text,
/// so that a wrong column would compare as a constant instead of failing.
const std::string& CheckedName(const std::string& name);

/// The parts with `separator` between them.
std::string Joined(const std::vector<std::string>& parts, const char* separator);

}  // namespace merodbquery
