#include <gtest/gtest.h>
#include <mero/api_parameter_factory.h>
#include <mero/api_request.h>
#include <mero/api_response.h>

#include <string>

#include "support/json_value.h"
#include "support/table.h"

namespace {

using MERO::APIParameter;
using MERO::APIParameterFactoryBasicImpl;
using MERO::APIRequest;
using MERO::PARAM_OPTIONAL;

std::string Shown(const std::string& value) {
    return value;
}

std::string Shown(int value) {
    return std::to_string(value);
}

template <typename T>
std::string StateOf(const APIParameter<T>& parameter) {
    if (parameter.IsInvalid()) {
        return parameter.IsSet() ? "unusable" : "missing";
    }
    return parameter.IsSet() ? Shown(parameter.Get()) : "a value without a key";
}

TEST(APIParameter, IsTakenFromJsonByItsType) {
    const test::Table<const char*, const char*, const char*> rows = {
        {R"({"k":"a b"})", "a b", "unusable"},
        {R"({"k":""})", "", "unusable"},
        {R"({"k":"7"})", "7", "unusable"},
        {R"({"k":7})", "unusable", "7"},
        {R"({"k":-2147483648})", "unusable", "-2147483648"},
        {R"({"k":2147483648})", "unusable", "unusable"},
        {R"({"k":7.5})", "unusable", "unusable"},
        {R"({"k":true})", "unusable", "unusable"},
        {R"({"k":null})", "unusable", "unusable"},
        {R"({"k":["a"]})", "unusable", "unusable"},
        {R"({"k":{"k":"a"}})", "unusable", "unusable"},
        {"{\"k\":\"a\\u0000b\"}", "unusable", "unusable"},
        {"{\"k\":\"\xff\xfe\"}", "\xff\xfe", "unusable"},
        {R"({"K":"a"})", "missing", "missing"},
        {"{}", "missing", "missing"},
        {"null", "missing", "missing"},
        {R"(["k"])", "missing", "missing"},
        {R"("k")", "missing", "missing"},
    };
    for (const auto& [json, as_text, as_number] : rows) {
        const Json::Value params = test::JsonOf(json);
        const auto text = APIParameterFactoryBasicImpl<std::string>::FromJson(
            params, "k", PARAM_OPTIONAL, nullptr);
        const auto number =
            APIParameterFactoryBasicImpl<int>::FromJson(params, "k", PARAM_OPTIONAL, nullptr);
        EXPECT_EQ(StateOf(text), as_text) << json;
        EXPECT_EQ(StateOf(number), as_number) << json;
    }
}

TEST(APIParameter, OfAFormMayBeANumbersText) {
    const test::Table<std::string, const char*> rows = {
        {"7", "7"},
        {"-1", "-1"},
        {"007", "7"},
        {"2147483647", "2147483647"},
        {"2147483648", "unusable"},
        {"+7", "unusable"},
        {" 7", "unusable"},
        {"7 ", "unusable"},
        {"7.0", "unusable"},
        {"0x7", "unusable"},
        {"", "unusable"},
        {std::string(1U << 20, '9'), "unusable"},
    };
    for (const auto& [text, number] : rows) {
        const APIRequest request("", 0, "", Json::objectValue, {{"k", text}});
        EXPECT_EQ(StateOf(request.GetAndCheckInt("k", PARAM_OPTIONAL, nullptr)), number)
            << text.substr(0, 20);
        EXPECT_EQ(request.GetAndCheckString("k", PARAM_OPTIONAL, nullptr).Get(), text);
    }
}

TEST(APIParameter, IsUnusableWhereAValidatorRefusesIt) {
    const APIRequest request("", 0, "", test::JsonOf(R"({"odd":3,"text":"abc"})"), {{"even", "4"}});
    const auto is_odd = [](const int& number) { return number % 2 == 1; };
    EXPECT_EQ(StateOf(request.GetAndCheckInt("odd", PARAM_OPTIONAL, is_odd)), "3");
    EXPECT_EQ(StateOf(request.GetAndCheckInt("even", PARAM_OPTIONAL, is_odd)), "unusable");
    EXPECT_EQ(StateOf(request.GetAndCheckString(
                  "text", PARAM_OPTIONAL, [](const std::string& text) { return text.empty(); })),
              "unusable");
}

TEST(APIRequest, PrefersParametersWithAType) {
    const APIRequest request("", 0, "", test::JsonOf(R"({"both":1,"json":"x"})"),
                             {{"both", "2"}, {"form", "3"}}, {{"HTTP_X_MERO_TOKEN", "t"}});
    EXPECT_EQ(test::TextOf(request.GetParams()), R"({"both":1,"form":"3","json":"x"})");
    EXPECT_EQ(StateOf(request.GetAndCheckInt("both", PARAM_OPTIONAL, nullptr)), "1");
    EXPECT_EQ(StateOf(request.GetAndCheckString("both", PARAM_OPTIONAL, nullptr)), "unusable");
    EXPECT_EQ(StateOf(request.GetAndCheckInt("form", PARAM_OPTIONAL, nullptr)), "3");

    EXPECT_EQ(request.GetEnv("HTTP_X_MERO_TOKEN", "none"), Json::Value("t"));
    EXPECT_EQ(request.GetEnv("HTTP_X_OTHER", "none"), Json::Value("none"));
}

TEST(APIResponse, RepliesWithPayloadOrCode) {
    MERO::APIResponse response;
    EXPECT_TRUE(response.IsOutputEnabled());
    EXPECT_EQ(test::TextOf(response.Reply()), R"({"data":null,"success":true})");
    response.SetSuccess(test::JsonOf(R"({"total":3})"));
    EXPECT_EQ(test::TextOf(response.Reply()), R"({"data":{"total":3},"success":true})");
    response.SetError(117, "secret");
    response.SetEnableOutput(false);
    EXPECT_FALSE(response.IsOutputEnabled());
    EXPECT_EQ(test::TextOf(response.Reply()), R"({"error":{"code":117},"success":false})");
}

}  // namespace
