#include "log/adminlog/logger/escape_json_text.h"

#include "utils/strings.h"

namespace serverlog::log::adminlog {

std::string EscapeJsonText(std::string const& text) {
    return utils::Replace(utils::Replace(text, "\\", "\\\\"), "\"", "\\\"");
}

}  // namespace serverlog::log::adminlog
