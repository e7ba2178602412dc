#include "log/adminlog/toolkit/label.h"

#include "log/adminlog/toolkit/texts.h"

#include <algorithm>

namespace serverlog::log::adminlog {

namespace {

Json::Value const& EnglishTexts() {
    // Kept here once more, since GetPostCubeParsedText copies all texts out on every call.
    static Json::Value const texts = GetPostCubeParsedText(kStatementLanguage);
    return texts;
}

}  // namespace

std::string LabelText(Label const& label) {
    return EnglishTexts()[label.section][label.key].asString();
}

std::string WordText(std::string const& value, Word const* words, std::size_t count) {
    Word const* const word = std::find_if(
        words, words + count, [&value](Word const& candidate) { return value == candidate.value; });
    return word == words + count ? std::string() : LabelText(word->label);
}

std::vector<Translator> MakeTranslators(Setting const* settings, std::size_t count) {
    std::vector<Translator> translators;
    translators.reserve(count);
    for (Setting const* setting = settings; setting != settings + count; ++setting) {
        translators.push_back({setting->prefix + LabelText(setting->label) + setting->suffix,
                               setting->parameter, setting->format});
    }
    return translators;
}

}  // namespace serverlog::log::adminlog
