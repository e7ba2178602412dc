#include "log/adminlog/toolkit/texts.h"

#include <mds/localized_string_parser.h>

namespace serverlog::log::adminlog {

Json::Value GetParsedText(std::string const& path) {
    return MDS::LocalizedStringParser::ParseTexts(path);
}

Json::Value GetPostCubeParsedText(std::string const& language) {
    static Json::Value const texts = GetParsedText(kPostCubeTexts + language);
    return texts;
}

Json::Value GetZsmParsedText(std::string const& language) {
    static Json::Value const texts = GetParsedText(kSystemTexts + language);
    return texts;
}

}  // namespace serverlog::log::adminlog
