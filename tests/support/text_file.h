#pragma once

#include <string>
#include <vector>

namespace test {

/// Writes a file with the given text and mode, in place of an older one.
/// Throws std::runtime_error where it can't.
void WriteTextFile(const std::string& path, const std::string& text, unsigned mode = 0644);

/// The text of a file; throws std::runtime_error where it can't be read.
std::string ReadTextFile(const std::string& path);

/// The names of what is in a folder, sorted.
std::vector<std::string> FilesIn(const std::string& folder);

}  // namespace test
