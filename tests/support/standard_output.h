#pragma once

#include <functional>
#include <string>

namespace test {

/// Runs `work` with standard output in place of which `descriptor` stands.
void WithStandardOutput(int descriptor, const std::function<void()>& work);

/// What `work` writes to standard output.
std::string StandardOutputOf(const std::function<void()>& work);

}  // namespace test
