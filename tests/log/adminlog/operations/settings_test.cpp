#include "support/operation_fixture.h"

#include "support/text_file.h"
#include "utils/json_text.h"

#include <gmock/gmock.h>
#include <json/value.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

// Each file of settings/ is a page of settings:
//
//     {"operation": "<key>", "tab": 7, "reply": "<api> <method>", "section": "<member of the
//     reply>",
//      "settings": [["<parameter>", <old value>, <new value>, "<statement>"], …]}
//
// "section" is left out where the settings are the reply itself. A parameter may have several rows;
// unless its own row is looked at it has the old value of the first.

namespace {

using test::OperationTest;
using test::Statement;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kFolder[] = PROJECT_SOURCE_DIRECTORY "/tests/log/adminlog/operations/settings";

enum Column : Json::ArrayIndex { kParameter, kOld, kNew, kStatement };

std::vector<std::string> Pages() {
    std::vector<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(kFolder)) {
        names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

class SettingsTest : public OperationTest, public testing::WithParamInterface<std::string> {
 protected:
    SettingsTest() {
        std::string const path = std::string(kFolder) + "/" + GetParam() + ".json";
        if (!serverlog::utils::ParseJsonText(test::ReadTextFile(path), page_)) {
            throw std::runtime_error("no JSON: " + path);
        }
        for (Json::Value const& row : page_["settings"]) {
            if (!old_.isMember(row[kParameter].asString())) {
                old_[row[kParameter].asString()] = row[kOld];
            }
        }
    }

    test::OperationResult Save(Json::Value const& old, Json::Value const& params) {
        test::OperationCall call;
        call.operation = page_["operation"].asString();
        call.params = params;
        Json::Value& data = call.replies[page_["reply"].asString()];
        (page_.isMember("section") ? data[page_["section"].asString()] : data) = old;
        return Run(call);
    }

    Json::Value page_;
    Json::Value old_;
};

TEST_P(SettingsTest, EachChangedSettingGivesOneStatement) {
    ASSERT_FALSE(page_["settings"].empty());
    for (Json::Value const& row : page_["settings"]) {
        std::string const parameter = row[kParameter].asString();
        Json::Value old = old_;
        old[parameter] = row[kOld];
        Json::Value params;
        params[parameter] = row[kNew];
        auto const result = Save(old, params);
        EXPECT_THAT(result.statements,
                    ElementsAre(Statement{page_["tab"].asInt(), row[kStatement].asString()}))
            << parameter;
        EXPECT_THAT(result.errors, IsEmpty()) << parameter;
    }
}

TEST_P(SettingsTest, EqualTextsGiveNone) {
    Json::Value params;
    for (std::string const& parameter : old_.getMemberNames()) {
        params[parameter] = old_[parameter].asString();
    }
    EXPECT_THAT(Save(old_, params).statements, IsEmpty());
    EXPECT_THAT(Save(old_, old_).statements, IsEmpty());
}

TEST_P(SettingsTest, OldStateOfAnotherShapeGivesNone) {
    Json::Value params;
    for (Json::Value const& row : page_["settings"]) {
        params[row[kParameter].asString()] = row[kNew];
    }
    Json::Value const list(Json::arrayValue);
    for (Json::Value const& old : {Json::Value(), Json::Value("text"), Json::Value(7), list}) {
        EXPECT_THAT(Save(old, params).statements, IsEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(Pages, SettingsTest, testing::ValuesIn(Pages()),
                         [](auto const& page) { return page.param; });

}  // namespace
