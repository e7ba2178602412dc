#include <fcntl.h>
#include <gtest/gtest.h>
#include <mailserver/file.h>
#include <sys/stat.h>

#include <filesystem>

#include "support/child.h"
#include "support/text_file.h"

namespace {

constexpr char kUser[] = "PostCube-Server";

TEST(OwnerMode, HandsFilesAndFoldersOver) {
    SKIP_WITHOUT_SECOND_USER();
    test::WriteTextFile("/tmp/owned", "", 0600);
    std::filesystem::create_directory("/tmp/folder");
    for (const char* path : {"/tmp/owned", "/tmp/folder/"}) {
        EXPECT_EQ(mailFileOwnerModeSet(path, kUser, 0644), 0) << path;
        struct stat status = {};
        ASSERT_EQ(stat(path, &status), 0);
        EXPECT_EQ(status.st_uid, 8025U) << path;
        EXPECT_EQ(status.st_gid, 8025U) << path;
        EXPECT_EQ(status.st_mode & 07777, 0644U) << path;
    }
}

TEST(OwnerMode, FailuresChangeNothing) {
    test::WriteTextFile("/tmp/kept", "", 0600);
    std::filesystem::create_symlink("/tmp/kept", "/tmp/link");
    EXPECT_LT(mailFileOwnerModeSet("/tmp/missing", kUser, 0644), 0);
    EXPECT_LT(mailFileOwnerModeSet("/tmp/kept", "no such user", 0644), 0);
    EXPECT_LT(mailFileOwnerModeSet("/tmp/link", kUser, 0644), 0);
    EXPECT_EQ(test::InChildWithoutRights(
                  [] { return std::to_string(mailFileOwnerModeSet("/tmp/kept", kUser, 0644)); }),
              "-1");
    struct stat status = {};
    ASSERT_EQ(stat("/tmp/kept", &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
    EXPECT_EQ(status.st_uid, 0U);
}

TEST(FileQuestions, FolderAndTime) {
    test::WriteTextFile("/tmp/dated", "");
    const timespec times[] = {{1700000000, 0}, {1700000001, 999999999}};
    ASSERT_EQ(utimensat(AT_FDCWD, "/tmp/dated", times, 0), 0);
    std::filesystem::create_symlink("/tmp/dated", "/tmp/dated-link");
    std::filesystem::create_directory_symlink("/tmp", "/tmp/folder-link");
    EXPECT_EQ(pcsGetFileMtime("/tmp/dated"), 1700000001);
    EXPECT_EQ(pcsGetFileMtime("/tmp/dated-link"), 1700000001);
    EXPECT_EQ(pcsGetFileMtime("/tmp/missing"), 0);
    EXPECT_TRUE(pcsDirectoryExist("/tmp"));
    EXPECT_TRUE(pcsDirectoryExist("/tmp/folder-link"));
    EXPECT_FALSE(pcsDirectoryExist("/tmp/dated"));
    EXPECT_FALSE(pcsDirectoryExist("/tmp/missing"));
    EXPECT_FALSE(pcsDirectoryExist(""));
}

}  // namespace
