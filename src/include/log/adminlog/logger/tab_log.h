#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace serverlog::log::adminlog {

/// One group of an operation's statements, all shown under one tab of the admin log.
struct TabLog {
    /// Number of the tab, 1 to 32; goes into the line and the column `tab_type`.
    std::int32_t tab_type;

    /// Templates in the order of writing, with the placeholders %0%, %1% and so on. They reach the
    /// line unescaped, so a template holds neither a quote nor a backslash.
    std::vector<std::string> statements;
};

}  // namespace serverlog::log::adminlog
