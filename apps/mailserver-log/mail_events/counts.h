#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace serverlog::program {

/// What became of lines.
struct Counts {
    /// As many programs are told apart, for a log may name any number of them.
    static constexpr std::size_t kMostPrograms = 200;
    static constexpr char kOtherPrograms[] = "(others)";
    static constexpr char kNoProgram[] = "(none)";

    std::uint64_t lines = 0;
    std::uint64_t mail = 0;      ///< rows that were stored
    std::uint64_t security = 0;  ///< rows that were stored
    std::uint64_t skipped = 0;
    std::uint64_t unreadable = 0;
    std::map<std::string, std::uint64_t, std::less<>> skipped_by_program;

    /// Counts a line that gave nothing.
    ///
    /// @return the name under which it is counted
    const std::string& Skip(std::string_view program);
};

}  // namespace serverlog::program
