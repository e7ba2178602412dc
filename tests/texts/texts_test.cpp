#include <gtest/gtest.h>
#include <json/value.h>
#include <mds/localized_string_parser.h>

#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <tuple>
#include <vector>

#include "support/syslog_socket.h"

namespace {

const std::string kProject = PROJECT_SOURCE_DIRECTORY;

// Folders below texts/, each in its languages.
const char* const kFolders[] = {"", "platform/"};
const char* const kLanguages[] = {"enu", "ger"};

std::string PathOf(const std::string& folder, const std::string& language) {
    return kProject + "/texts/" + folder + language + "/strings";
}

// "section.key" of every text.
using Texts = std::map<std::string, std::string>;

Texts Parse(const std::string& path) {
    Texts texts;
    const Json::Value sections = MDS::LocalizedStringParser::ParseTexts(path);
    for (const std::string& section : sections.getMemberNames()) {
        for (const std::string& key : sections[section].getMemberNames()) {
            texts[section + "." + key] = sections[section][key].asString();
        }
    }
    return texts;
}

std::vector<std::string> NamesOf(const Texts& texts) {
    std::vector<std::string> names;
    for (const auto& [name, text] : texts) {
        names.push_back(name);
    }
    return names;
}

class ShippedTexts
    : public testing::TestWithParam<std::tuple<const char* /*folder*/, const char* /*language*/>> {
 protected:
    const std::string folder_ = std::get<0>(GetParam());
    const std::string path_ = PathOf(folder_, std::get<1>(GetParam()));
};

INSTANTIATE_TEST_SUITE_P(All, ShippedTexts,
                         testing::Combine(testing::ValuesIn(kFolders),
                                          testing::ValuesIn(kLanguages)));

TEST_P(ShippedTexts, EveryLineIsUnderstood) {
    test::SyslogSocket log;
    EXPECT_FALSE(Parse(path_).empty());
    for (const auto& line : log.Take()) {
        ADD_FAILURE() << line.text;
    }
}

// The parser takes the last of two like keys without a word.
TEST_P(ShippedTexts, KeysComeOnce) {
    std::ifstream file(path_);
    std::size_t lines = 0;
    for (std::string line; std::getline(file, line);) {
        lines += line.find('=') != std::string::npos && line[0] != '#' ? 1 : 0;
    }
    EXPECT_EQ(Parse(path_).size(), lines);
}

TEST_P(ShippedTexts, TextsFitIntoASentence) {
    const std::regex placeholder("%[0-9]+%");
    for (const auto& [name, text] : Parse(path_)) {
        ASSERT_FALSE(text.empty()) << name;
        EXPECT_FALSE(std::regex_search(text, placeholder)) << name;
        if (name.rfind("notification.", 0) != 0) {
            EXPECT_NE(text.back(), '.') << name;
        }
    }
}

TEST_P(ShippedTexts, EachLanguageHasTheSameKeys) {
    EXPECT_EQ(NamesOf(Parse(path_)), NamesOf(Parse(PathOf(folder_, "enu"))));
}

// Of two changed settings with one name a statement is written for the first only.
TEST(EnglishTexts, NoTwoOfASectionAreAlike) {
    std::map<std::string, std::string> seen;
    for (const auto& [name, text] : Parse(PathOf("", "enu"))) {
        const std::string section = name.substr(0, name.find('.'));
        const auto [first, is_new] = seen.emplace(section + ": " + text, name);
        EXPECT_TRUE(is_new) << first->second << " and " << name;
    }
}

}  // namespace
