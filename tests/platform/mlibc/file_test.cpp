#include <gtest/gtest.h>
#include <mlibc/file.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/text_file.h"

namespace {

using Names = std::vector<std::string>;

// Lists into a list that has room for one string and holds none yet; the result is the call's own.
int List(const std::string& folder, const std::string& prefix, int flags, Names& names) {
    MLIBCSzList* list = MLIBCSzListAlloc(1);
    const int result = MLIBCFileEnumDir(folder.c_str(), prefix.c_str(), &list, flags);
    names.assign(list->items, list->items + list->count);
    MLIBCSzListFree(list);
    return result;
}

TEST(FileEnum, SelectsSortsAndNames) {
    const std::string folder = "/tmp/enum";
    std::filesystem::create_directories(folder + "/log-folder");
    for (const char* name : {"log-2", "log-10", "log-1", "log", "other", ".log"}) {
        test::WriteTextFile(folder + "/" + name, "");
    }
    std::filesystem::create_symlink(folder + "/log-1", folder + "/log-link");

    const struct {
        std::string name;
        std::string folder;
        std::string prefix;
        int flags;
        Names names;
    } rows[] = {
        {"as the library asks",
         folder,
         "log-",
         130,
         {"/tmp/enum/log-1", "/tmp/enum/log-10", "/tmp/enum/log-2"}},
        {"slash at the end", folder + "/", "log-1", 130, {"/tmp/enum/log-1", "/tmp/enum/log-10"}},
        {"bare names of every kind",
         folder,
         "log-",
         0,
         {"log-1", "log-10", "log-2", "log-folder", "log-link"}},
        {"no prefix", folder, "", 2, {".log", "log", "log-1", "log-10", "log-2", "other"}},
        {"nothing fits", folder, "Log", 130, {}},
    };
    for (const auto& row : rows) {
        Names names;
        EXPECT_EQ(List(row.folder, row.prefix, row.flags, names),
                  static_cast<int>(row.names.size()))
            << row.name;
        EXPECT_EQ(names, row.names) << row.name;
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
    EXPECT_EQ(test::InChild([] {
                  test::DropCapabilities();
                  Names names;
                  return std::to_string(List("/tmp/closed", "", 130, names));
              }),
              "-1");
}

}  // namespace
