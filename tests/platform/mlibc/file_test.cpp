#include <gtest/gtest.h>
#include <mlibc/file.h>

#include <filesystem>
#include <string>

#include "support/child.h"
#include "support/table.h"
#include "support/text_file.h"

namespace {

// Lists into a list that has room for one string and holds none yet: the call's own result and the
// names.
std::string List(const std::string& folder, const std::string& prefix, int flags) {
    MLIBCSzList* list = MLIBCSzListAlloc(1);
    std::string text =
        std::to_string(MLIBCFileEnumDir(folder.c_str(), prefix.c_str(), &list, flags));
    for (int i = 0; i < list->count; ++i) {
        text += std::string(" ") + list->items[i];
    }
    MLIBCSzListFree(list);
    return text;
}

TEST(FileEnum, SelectsSortsAndNames) {
    const std::string folder = "/tmp/enum";
    std::filesystem::create_directories(folder + "/log-folder");
    for (const char* name : {"log-2", "log-10", "log-1", "log", "other", ".log"}) {
        test::WriteTextFile(folder + "/" + name, "");
    }
    std::filesystem::create_symlink(folder + "/log-1", folder + "/log-link");

    const test::Table<std::string, std::string, int, std::string> rows = {
        {folder, "log-", 130, "3 /tmp/enum/log-1 /tmp/enum/log-10 /tmp/enum/log-2"},
        {folder + "/", "log-1", 130, "2 /tmp/enum/log-1 /tmp/enum/log-10"},
        {folder, "log-", 0, "5 log-1 log-10 log-2 log-folder log-link"},
        {folder, "", 2, "6 .log log log-1 log-10 log-2 other"},
        {folder, "Log", 130, "0"},
    };
    for (const auto& [path, prefix, flags, list] : rows) {
        EXPECT_EQ(List(path, prefix, flags), list) << path << " " << prefix << " " << flags;
    }
}

TEST(FileEnum, FailuresLeaveTheListAsItWas) {
    test::WriteTextFile("/tmp/first", "");
    MLIBCSzList* list = MLIBCSzListAlloc(1024);
    ASSERT_EQ(MLIBCFileEnumDir("/tmp", "first", &list, 130), 1);
    EXPECT_EQ(MLIBCFileEnumDir("/tmp/missing", "", &list, 130), -1);
    EXPECT_EQ(MLIBCFileEnumDir("/tmp/first", "", &list, 130), -1);
    EXPECT_EQ(MLIBCFileEnumDir("/tmp", "", &list, 1), -1);
    EXPECT_EQ(MLIBCFileEnumDir(nullptr, "", &list, 130), -1);
    ASSERT_EQ(list->count, 1);
    EXPECT_STREQ(list->items[0], "/tmp/first");
    MLIBCSzListFree(list);

    EXPECT_EQ(MLIBCSzListAlloc(0), nullptr);
    MLIBCSzListFree(nullptr);
}

TEST(FileEnum, FolderThatMayNotBeReadIsAFailure) {
    std::filesystem::create_directory("/tmp/closed");
    std::filesystem::permissions("/tmp/closed", std::filesystem::perms::none);
    EXPECT_EQ(test::InChildWithoutRights([] { return List("/tmp/closed", "", 130); }), "-1");
}

}  // namespace
