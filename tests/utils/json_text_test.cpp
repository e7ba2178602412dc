#include "utils/json_text.h"

#include <gtest/gtest.h>

namespace serverlog::utils {
namespace {

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
