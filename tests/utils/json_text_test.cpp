#include "utils/json_text.h"

#include <gtest/gtest.h>

namespace serverlog::utils {
namespace {

// Lines and rows are stored and compared in this form.
TEST(JsonText, OneLineWithSortedMembersAndALineFeed) {
    Json::Value value;
    value["b"] = "é\"\\\n";
    value["a"] = Json::arrayValue;
    value["c"] = Json::Value::null;
    value["d"] = 1.5;
    EXPECT_EQ(ToJsonText(value), "{\"a\":[],\"b\":\"\\u00e9\\\"\\\\\\n\",\"c\":null,\"d\":1.5}\n");
    Json::Value read;
    EXPECT_TRUE(ParseJsonText(ToJsonText(value), read));
    EXPECT_EQ(read, value);
}

TEST(JsonText, ReadsWhatTheReaderAlwaysRead) {
    const struct {
        const char* text;
        bool read;
    } rows[] = {
        {"{} behind", true}, {"// why\n[1]", true}, {"{\"a\":1,}", false},
        {"", false},         {"{\"a\"", false},     {"text", false},
    };
    for (const auto& row : rows) {
        Json::Value value;
        EXPECT_EQ(ParseJsonText(row.text, value), row.read) << row.text;
    }
}

}  // namespace
}  // namespace serverlog::utils
