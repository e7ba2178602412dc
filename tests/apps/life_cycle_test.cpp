// The subcommands rotate, archive and upgrade.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver/mail_conf.h>

#include <filesystem>
#include <string>

#include "support/named_rows.h"
#include "support/program.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/text_file.h"

namespace {

namespace fs = std::filesystem;
using serverlog::db::AdminLogDB;
using serverlog::db::MailLogDB;
using serverlog::db::Provider;
using serverlog::db::SecurityLogDB;
using serverlog::db::StoreTraits;
using test::Program;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string kDestination = "/volume1/archive";

class LifeCycle : public testing::Test {
 protected:
    LifeCycle() {
        test::EmptySpool();
        fs::remove_all(kDestination);
        fs::create_directory(kDestination);
        Make<AdminLogDB>();
        Make<MailLogDB>();
        Make<SecurityLogDB>();
        Enable("yes");
    }

    template <class DB>
    static void Make() {
        const std::string path = StoreTraits<DB>::kPath;
        Provider(path).Get<DB>(false);
        test::RunOnFile(path, test::InsertRow<DB>("old", 1));
    }

    static void Enable(const std::string& enabled) {
        mailConfSet("archive_enable_schedule", enabled, false, 0);
        mailConfSet("archive_destination", kDestination, false, 0);
    }

    static std::size_t FilesIn(const std::string& folder) {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
    }
};

TEST_F(LifeCycle, DoesAllStoresOrThoseThatAreNamed) {
    const struct {
        std::vector<std::string> arguments;
        std::string output;
    } rows[] = {
        {{"upgrade"}, "admin: upgraded\nmail: upgraded\nsecurity: upgraded\n"},
        {{"upgrade", "security"}, "security: upgraded\n"},
        {{"rotate", "mail", "admin"}, "mail: rotated\nadmin: rotated\n"},
        {{"rotate"}, "admin: rotated\nmail: rotated\nsecurity: rotated\n"},
        {{"archive", "plain"}, "archived\n"},
        {{"archive", "mail", "plain"}, "archived\n"},
    };
    for (const auto& row : rows) {
        const Program::Result result = Program::Run(row.arguments);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.output, row.output);
        EXPECT_EQ(result.error, "");
    }
    EXPECT_THAT(test::RunOnFile(StoreTraits<MailLogDB>::kMainPath, test::SelectNames<MailLogDB>()),
                ElementsAre("old"));
    EXPECT_EQ(FilesIn(kDestination), 2U) << "the mail store, and its rows that waited";
    EXPECT_EQ(Program::Run({"archive"}).output, "archived\n");
    EXPECT_EQ(FilesIn(kDestination), 6U);
}

TEST_F(LifeCycle, GoesOnBehindAStoreThatFailsAndTellsWhatToDo) {
    fs::remove(StoreTraits<AdminLogDB>::kPath);
    test::WriteTextFile(StoreTraits<MailLogDB>::kMainPath, "no store");
    const Program::Result rotation = Program::Run({"rotate"});
    EXPECT_EQ(rotation.status, 1);
    EXPECT_EQ(rotation.output, "admin: failed\nmail: failed\nsecurity: rotated\n");
    EXPECT_THAT(rotation.error, HasSubstr("admin: there is no store "));
    EXPECT_THAT(rotation.error,
                HasSubstr("mail: aggr_mail_log_main.db cannot be read: file is not a database; "));
    EXPECT_THAT(rotation.error, HasSubstr("failed on admin, mail; no row is lost"));

    fs::remove(StoreTraits<MailLogDB>::kOperationLock);
    fs::create_directory(StoreTraits<MailLogDB>::kOperationLock);
    const Program::Result upgrade = Program::Run({"upgrade"});
    fs::remove(StoreTraits<MailLogDB>::kOperationLock);
    EXPECT_EQ(upgrade.status, 1);
    EXPECT_EQ(upgrade.output, "admin: upgraded\nmail: failed\nsecurity: upgraded\n");
    EXPECT_THAT(upgrade.error, HasSubstr("mail: Can not get exclusive file lock, "));
}

TEST_F(LifeCycle, ArchiveTellsWhenItIsOffOrFails) {
    Enable("no");
    const Program::Result off = Program::Run({"archive"});
    EXPECT_EQ(off.status, 0);
    EXPECT_EQ(off.output, "archived\n");
    EXPECT_THAT(off.error, HasSubstr("archiving is off"));

    Enable("yes");
    fs::remove_all(kDestination);
    const Program::Result failed = Program::Run({"archive"});
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.output, "failed\n");
    EXPECT_THAT(failed.error, HasSubstr("not all could be archived"));
}

TEST_F(LifeCycle, RefusesUnknownNames) {
    for (const char* command : {"rotate", "archive", "upgrade"}) {
        const Program::Result result = Program::Run({command, "none"});
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.error, HasSubstr("none"));
    }
    EXPECT_FALSE(fs::exists(StoreTraits<MailLogDB>::kMainPath));
}

}  // namespace
