#include <gtest/gtest.h>
#include <json/value.h>
#include <mds/localized_string_parser.h>

#include <filesystem>
#include <fstream>
#include <iterator>
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

std::string ReadFile(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
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
TEST_P(ShippedTexts, SectionsAndKeysAreSortedAndComeOnce) {
    std::ifstream file(path_);
    std::string section;
    std::string key;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        if (line[0] == '[') {
            EXPECT_LT(section, line);
            section = line;
            key.clear();
            continue;
        }
        const std::string next_key = line.substr(0, line.find('='));
        EXPECT_LT(key, next_key) << section;
        key = next_key;
    }
    EXPECT_FALSE(key.empty());
}

TEST_P(ShippedTexts, TextsFitIntoASentence) {
    const std::regex placeholder("%[0-9]+%");
    for (const auto& [name, text] : Parse(path_)) {
        ASSERT_FALSE(text.empty()) << name;
        EXPECT_EQ(text.find("  "), std::string::npos) << name;
        EXPECT_NE(text.front(), ' ') << name;
        EXPECT_NE(text.back(), ' ') << name;
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

struct SourceLabel {
    std::string name;  // as in Texts
    std::string place;
};

std::vector<SourceLabel> LabelsInSources() {
    // Label{"section", "key"}, with round brackets or a variable's name too.
    const std::regex label(R"re(\bLabel(?:\s+\w+)*\s*[{(]\s*"([^"]*)"\s*,\s*"([^"]*)"\s*[})])re");
    std::vector<SourceLabel> labels;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(kProject + "/src")) {
        if (!entry.is_regular_file()) {
            continue;
        }
        const std::string source = ReadFile(entry.path());
        for (std::sregex_iterator match(source.begin(), source.end(), label), end; match != end;
             ++match) {
            labels.push_back({(*match)[1].str() + "." + (*match)[2].str(), entry.path()});
        }
    }
    return labels;
}

TEST(Labels, EveryLabelOfTheSourcesIsShipped) {
    const std::vector<SourceLabel> labels = LabelsInSources();
    // At least the example at the type is found as long as labels are written as it says there; the
    // type's explicit constructor has the compiler refuse the ways that would be missed.
    EXPECT_FALSE(labels.empty());
    const Texts texts = Parse(PathOf("", "enu"));
    for (const SourceLabel& label : labels) {
        EXPECT_EQ(texts.count(label.name), 1U) << label.name << " of " << label.place;
    }
}

}  // namespace
