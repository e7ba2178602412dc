#pragma once

#include <string>
#include <vector>

namespace test {

/// Runs `sql`, any number of statements, on the SQLite file at `path` over a connection of its own
/// and gives all rows: their cells as text joined with "|", "NULL" for NULL. Creates the file when
/// it isn't there. std::runtime_error with SQLite's text on an error.
std::vector<std::string> RunOnFile(const std::string& path, const std::string& sql);

}  // namespace test
