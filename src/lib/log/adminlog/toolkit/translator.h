#pragma once

#include <json/value.h>

#include <functional>
#include <string>

namespace serverlog::log::adminlog {

/// How MuggleTranslate puts one setting into words.
struct Translator {
    /// The setting's name as the statement shows it.
    std::string label;

    /// The parameter's name, which is also its key in the change map.
    std::string key;

    /// Turns the member `member` of `object` into text, for the old value and for the new one; when
    /// empty the member's own text is shown.
    std::function<std::string(std::string const& member, Json::Value const& object)> format;
};

}  // namespace serverlog::log::adminlog
