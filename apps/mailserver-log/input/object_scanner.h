#pragma once

#include <cstddef>
#include <string_view>

namespace serverlog::program {

/// Finds the end of a JSON object that comes in pieces. It only counts brackets outside of texts,
/// so texts may hold raw control characters; whether the object is JSON at all is not its matter.
class ObjectScanner {
 public:
    static constexpr std::size_t kOpen = std::string_view::npos;

    /// Reads on in the object, which starts with the first piece's first character.
    ///
    /// @return the offset in `piece` behind the object's closing bracket; kOpen if it goes on
    std::size_t Scan(std::string_view piece);

 private:
    std::size_t depth_ = 0;
    bool in_text_ = false;
    bool escaped_ = false;
};

}  // namespace serverlog::program
