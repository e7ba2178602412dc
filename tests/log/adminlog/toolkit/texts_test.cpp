#include "log/adminlog/toolkit/texts.h"

#include "support/operation_fixture.h"

#include <gtest/gtest.h>

namespace {

using namespace serverlog::log::adminlog;

class TextsTest : public test::OperationTest {};

TEST_F(TextsTest, TheFirstLanguageStays) {
    EXPECT_EQ(GetPostCubeParsedText("enu")["domain"]["description"], "Description");
    EXPECT_EQ(GetPostCubeParsedText("ger"), GetPostCubeParsedText("enu"));
    EXPECT_EQ(GetZsmParsedText("nowhere").size(), 0U);
    EXPECT_EQ(GetZsmParsedText("enu").size(), 0U);
    EXPECT_NE(GetParsedText("/usr/mero/meroman/webman/texts/enu").size(), 0U);
}

}  // namespace
