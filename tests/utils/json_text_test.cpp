#include "utils/json_text.h"

#include <gtest/gtest.h>

#include "support/table.h"

namespace serverlog::utils {
namespace {

TEST(JsonText, ReadsWhatTheReaderAlwaysRead) {
    const test::Table<const char*, bool> rows = {
        {"{} behind", true}, {"// why\n[1]", true}, {"{\"a\":1,}", false},
        {"", false},         {"{\"a\"", false},     {"text", false},
    };
    for (const auto& [text, read] : rows) {
        Json::Value value;
        EXPECT_EQ(ParseJsonText(text, value), read) << text;
    }
}

}  // namespace
}  // namespace serverlog::utils
