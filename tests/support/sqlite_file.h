#pragma once

#include <string>
#include <vector>

namespace test {

/// Runs `sql`, any number of statements, on the SQLite file at `path` over a connection of its own
/// and gives the first column of all rows as text, "NULL" for NULL. Creates the file when it isn't
/// there. std::runtime_error with SQLite's text on an error.
std::vector<std::string> RunOnFile(const std::string& path, const std::string& sql);

}  // namespace test
