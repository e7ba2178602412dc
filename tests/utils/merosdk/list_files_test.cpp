#include "utils/merosdk/list_files.h"

#include <gtest/gtest.h>

#include "support/outcome.h"
#include "support/syslog_socket.h"
#include "utils/files.h"

namespace serverlog::utils {
namespace {

using Strings = std::vector<std::string>;

// More than the list has room for at first.
TEST(ListFilesWithPrefix, GivesManyFiles) {
    const std::string folder = "/tmp/many";
    constexpr std::size_t kFiles = 1500;
    MkDir(folder);
    for (std::size_t i = 0; i < kFiles; ++i) {
        WriteFileContent(folder + "/" + std::to_string(i), "");
    }
    EXPECT_EQ(ListFilesWithPrefix(folder, "").size(), kFiles);
}

TEST(ListFilesWithPrefix, UnreadableFolderThrows) {
    test::SyslogSocket log;
    const std::string text = "Can not list folder files, /tmp/none enum files with prefix: a fail";
    EXPECT_EQ(test::OutcomeOf<ETag::SDK>([] { ListFilesWithPrefix("/tmp/none", "a"); }), text);
    EXPECT_EQ(log.TakeErrors(), Strings{text});
}

}  // namespace
}  // namespace serverlog::utils
