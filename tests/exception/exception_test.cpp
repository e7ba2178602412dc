#include <gtest/gtest.h>
#include <mailserver-log/exception/exception.h>
#include <syslog.h>

#include "support/syslog_socket.h"

namespace serverlog {
namespace {

using testing::Test;

TEST(Exception, TextIsMessageAndDetail) {
    test::SyslogSocket log;
    const auto plain = make_exception<ETag::DB>(DBError::BadSession);
    EXPECT_STREQ(plain.what(), "");
    EXPECT_EQ(exception_str(plain), "DB bad session");

    const auto detailed =
        make_exception<ETag::FileSystem>(FileSystemError::MkDirFail, "/a No space left on device");
    EXPECT_STREQ(detailed.what(), "/a No space left on device");
    EXPECT_EQ(exception_str(detailed), "MkDir failed, /a No space left on device");

    EXPECT_EQ(log.TakeErrors(), (std::vector<std::string>{
                                    "DB bad session", "MkDir failed, /a No space left on device"}));
}

TEST(Exception, EveryLineShowsTheHeaderAsItsPlace) {
    test::SyslogSocket log;
    make_exception<ETag::Archive>(ArchiveError::CopyFail);
    make_exception<ETag::SDK>(SDKError::ApiDataFail, "100%s");
    const auto lines = log.TakeTexts(LOG_MAIL | LOG_ERR);
    ASSERT_EQ(lines.size(), 2U);
    const std::string place = "src/include/exception/exception.h:";
    for (const std::string& line : lines) {
        EXPECT_EQ(line.substr(0, place.size()), place);
    }
    EXPECT_EQ(lines[0].substr(0, lines[0].find(' ')), lines[1].substr(0, lines[1].find(' ')));
    EXPECT_EQ(lines[1].substr(lines[1].find(' ')), " Get api data fail, 100%s");
}

TEST(Exception, UnknownCodesHaveAText) {
    const Exception<ETag::SDK> unknown(static_cast<SDKError>(99), "detail");
    EXPECT_EQ(exception_str(unknown), "Unknown Lock SDKError, detail");
    EXPECT_STREQ(internal::Message(static_cast<DBError>(5)), "Unknown DBError");
    EXPECT_STREQ(internal::Message(static_cast<FileSystemError>(17)), "Unknown FileSystemError");
    EXPECT_STREQ(internal::Message(static_cast<LogError>(2)), "Unknown LogError");
    EXPECT_STREQ(internal::Message(static_cast<RotationError>(2)), "Unknown RotationError");
    EXPECT_STREQ(internal::Message(static_cast<ArchiveError>(4)), "Unknown ArchiveError");
}

TEST(ErrorLine, CutsTheFormatAndKeepsTheArguments) {
    test::SyslogSocket log;
    const std::string format = std::string(3000, 'x') + "%s";
    utils::WriteErrorLine("here.cpp", 7, format.c_str());
    const std::string long_value(5000, 'v');
    SERVERLOG_ERROR_LINE("%s|%d", long_value.c_str(), 3);
    const auto lines = log.TakeTexts(LOG_MAIL | LOG_ERR);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], "here.cpp:7 " + std::string(2047 - 11, 'x'));
    EXPECT_EQ(lines[1].substr(lines[1].find(' ') + 1), long_value + "|3");
}

}  // namespace
}  // namespace serverlog
