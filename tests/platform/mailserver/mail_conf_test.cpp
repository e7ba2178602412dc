#include <gtest/gtest.h>
#include <mailserver/mail_conf.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "support/child.h"
#include "support/syslog_socket.h"
#include "support/table.h"
#include "support/text_file.h"

namespace {

using Lines = std::vector<std::string>;

constexpr char kFolder[] = "/var/packages/PostCube-Server/etc";
constexpr char kPath[] = "/var/packages/PostCube-Server/etc/mailserver.conf";

class MailConf : public testing::Test {
 protected:
    void SetUp() override { std::filesystem::remove_all(kPath); }

    // Nothing may be left beside the file.
    static void ExpectNoOtherFile() {
        EXPECT_EQ(test::FilesIn(kFolder), (Lines{"mailserver.conf", "notify.d"}));
    }

    test::SyslogSocket log_;
};

TEST_F(MailConf, Get) {
    const test::Table<const char*, const char*, const char*, int, const char*> rows = {
        {"value", "a=\"1\"\nb=\"2\"\n", "b", 0, "2"},
        {"missing key", "a=\"1\"\n", "b", 0, ""},
        {"empty file", "", "a", 0, ""},
        {"key that begins like another", "ab=\"1\"\n", "a", 0, ""},
        {"escapes", R"(a="say \"x\\y\"")", "a", 0, R"(say "x\y")"},
        {"comments and blanks", "# b=\"0\"\n\n  b = \"2\"  \r\n", "b", 0, "2"},
        {"last line counts", "a=\"1\"\na=\"2\"\n", "a", 0, "2"},
        {"no quotes", "a=\"1\"\nb=2\n", "a", -1, ""},
        {"no closing quote", "a=\"1\n", "a", -1, ""},
        {"escaped closing quote", "a=\"1\\\"\n", "a", -1, ""},
        {"text behind the quote", "a=\"1\" x\n", "a", -1, ""},
        {"no setting at all", "a=\"1\"\nhello\n", "a", -1, ""},
    };
    for (const auto& [name, file, key, result, expected] : rows) {
        test::WriteTextFile(kPath, file);
        std::string value = "as it was";
        EXPECT_EQ(mailConfGet(key, value), result) << name;
        EXPECT_EQ(value, result == 0 ? expected : "as it was") << name;
    }
}

TEST_F(MailConf, Set) {
    const test::Table<const char*, const char*, const char*, const char*, const char*> rows = {
        {"new key", "# note\n\na=\"1\"\n", "b", "2", "# note\n\na=\"1\"\nb=\"2\"\n"},
        {"old key keeps its place", "a=\"1\"\n# note\nb=\"2\"\n", "a", "x y",
         "a=\"x y\"\n# note\nb=\"2\"\n"},
        {"repeated key", "a=\"1\"\nb=\"2\"\na=\"3\"\n", "a", "4", "a=\"4\"\nb=\"2\"\n"},
        {"escapes", "", "a", R"(say "x\y")", "a=\"say \\\"x\\\\y\\\"\"\n"},
        {"other lines stay as written", " b = \"\\2\" \nc=\"3\"", "a", "",
         " b = \"\\2\" \nc=\"3\"\na=\"\"\n"},
    };
    for (const auto& [name, before, key, expected, after] : rows) {
        test::WriteTextFile(kPath, before);
        EXPECT_EQ(mailConfSet(key, expected, false, 0), 0) << name;
        EXPECT_EQ(test::ReadTextFile(kPath), after) << name;
        std::string value;
        EXPECT_EQ(mailConfGet(key, value), 0) << name;
        EXPECT_EQ(value, expected) << name;
    }
    ExpectNoOtherFile();
    EXPECT_EQ(log_.Take().size(), 0U);
}

TEST_F(MailConf, MissingFileAndFolder) {
    const std::string away = std::string(kFolder) + ".away";
    std::filesystem::rename(kFolder, away);
    std::string value = "old";
    EXPECT_EQ(mailConfGet("a", value), 0);
    EXPECT_EQ(value, "");
    EXPECT_EQ(mailConfSet("a", "1", true, 0), 0);
    EXPECT_EQ(test::ReadTextFile(kPath), "a=\"1\"\n");
    EXPECT_EQ(std::filesystem::status(kPath).permissions(), std::filesystem::perms(0644));
    EXPECT_EQ(log_.TakeTexts(LOG_MAIL | LOG_NOTICE), Lines{"setting a was changed"});
    std::filesystem::remove_all(kFolder);
    std::filesystem::rename(away, kFolder);
}

TEST_F(MailConf, RefusedArgumentsChangeNothing) {
    test::WriteTextFile(kPath, "a=\"1\"\n");
    EXPECT_EQ(mailConfSet("", "1", false, 0), -1);
    EXPECT_EQ(mailConfSet("a b", "1", false, 0), -1);
    EXPECT_EQ(mailConfSet("#a", "1", false, 0), -1);
    EXPECT_EQ(mailConfSet("a=", "1", false, 0), -1);
    EXPECT_EQ(mailConfSet("a", "1\nb=\"2\"", false, 0), -1);
    EXPECT_EQ(mailConfSet("a", std::string("1\0", 2), false, 0), -1);
    EXPECT_EQ(mailConfSet("a", "2", false, 1), -1);
    EXPECT_EQ(test::ReadTextFile(kPath), "a=\"1\"\n");
}

TEST_F(MailConf, OwnerAndModeStay) {
    test::WriteTextFile(kPath, "a=\"1\"\n", 0640);
    const unsigned owner = test::HasSecondUser() ? test::kOtherUser : getuid();
    ASSERT_EQ(chown(kPath, owner, owner), 0);
    // What a writer that was killed has left behind is in nobody's way.
    test::WriteTextFile(std::string(kPath) + ".new", "half", 0);
    ASSERT_EQ(mailConfSet("a", "2", false, 0), 0);
    struct stat status = {};
    ASSERT_EQ(stat(kPath, &status), 0);
    EXPECT_EQ(status.st_uid, owner);
    EXPECT_EQ(status.st_gid, owner);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
    ExpectNoOtherFile();
}

TEST_F(MailConf, FileThatCannotBeReadIsAFailure) {
    const auto get_and_set = [] {
        std::string value;
        return std::to_string(mailConfGet("a", value)) + "," +
               std::to_string(mailConfSet("a", "2", false, 0));
    };
    test::WriteTextFile(kPath, "a=\"1\"\n", 0);
    EXPECT_EQ(test::InChildWithoutRights(get_and_set), "-1,-1");
    const std::string line = std::string("read ") + kPath + ": ";
    EXPECT_EQ(log_.TakeTexts(LOG_MAIL | LOG_WARNING),
              (Lines{line + "Permission denied", line + "Permission denied"}));

    std::filesystem::remove(kPath);
    std::filesystem::create_directory(kPath);
    EXPECT_EQ(get_and_set(), "-1,-1");
    EXPECT_EQ(log_.TakeTexts(LOG_MAIL | LOG_WARNING),
              (Lines{line + "Is a directory", line + "Is a directory"}));

    std::filesystem::remove(kPath);
    test::WriteTextFile(kPath, "a=\"1\"\nhello\n");
    EXPECT_EQ(get_and_set(), "-1,-1");
    EXPECT_EQ(test::ReadTextFile(kPath), "a=\"1\"\nhello\n");
}

TEST_F(MailConf, FailedWriteLeavesTheOldFile) {
    test::WriteTextFile(kPath, "a=\"1\"\n");
    EXPECT_EQ(test::InChild([] {
                  // The disk takes ten bytes and no more.
                  const rlimit limit = {10, 10};
                  setrlimit(RLIMIT_FSIZE, &limit);
                  signal(SIGXFSZ, SIG_IGN);
                  return std::to_string(mailConfSet("b", "2", false, 0));
              }),
              "-1");
    ExpectNoOtherFile();
    EXPECT_EQ(test::InChildWithoutRights([] {
                  chmod(kFolder, 0555);
                  return std::to_string(mailConfSet("b", "2", false, 0));
              }),
              "-1");
    chmod(kFolder, 0755);
    EXPECT_EQ(test::ReadTextFile(kPath), "a=\"1\"\n");
}

TEST_F(MailConf, WritersAtOnceLoseNothing) {
    constexpr int kWriters = 4;
    constexpr int kKeys = 25;
    test::WriteTextFile(kPath, "fixed=\"yes\"\n");
    std::vector<std::unique_ptr<test::Child>> writers;
    for (int writer = 0; writer < kWriters; ++writer) {
        writers.push_back(std::make_unique<test::Child>([writer] {
            for (int key = 0; key < kKeys; ++key) {
                const std::string name = "k" + std::to_string(writer * kKeys + key);
                if (mailConfSet(name, name, false, 0) != 0) {
                    return "failed at " + name;
                }
            }
            return std::string("done");
        }));
    }
    std::string value;
    for (int round = 0; round < 200; ++round) {
        ASSERT_EQ(mailConfGet("fixed", value), 0);
        ASSERT_EQ(value, "yes");
    }
    for (const auto& writer : writers) {
        EXPECT_EQ(writer->Wait(), "done");
    }
    for (int key = 0; key < kWriters * kKeys; ++key) {
        const std::string name = "k" + std::to_string(key);
        ASSERT_EQ(mailConfGet(name, value), 0);
        EXPECT_EQ(value, name);
    }
}

}  // namespace
