#include <gmock/gmock.h>
#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/single_db_session.h>
#include <mailserver-log/exception/exception.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "support/outcome.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/syslog_socket.h"

namespace serverlog::db {
namespace {

namespace fs = std::filesystem;
using test::kSpool;
using test::RunOnFile;
using testing::HasSubstr;
using testing::StartsWith;
using Lines = std::vector<std::string>;

const std::string kElsewhere = "/tmp/elsewhere/";

/// The links in /tmp to external stores, with what they point at.
Lines Links() {
    Lines links;
    for (const auto& entry : fs::directory_iterator("/tmp")) {
        if (entry.is_symlink()) {
            links.push_back(entry.path().filename().string() + " " +
                            fs::read_symlink(entry.path()).string());
        }
    }
    return links;
}

class ProviderTest : public testing::Test {
 protected:
    ProviderTest() {
        test::EmptySpool();
        fs::remove_all(kElsewhere);
        fs::create_directory(kElsewhere);
    }

    /// Makes a store outside the spool folder, with one row of the date given.
    static std::string MakeExternal(const std::string& name, int date) {
        auto memory = merodbquery::Session::SQLite(":memory:");
        RunOnFile(kElsewhere + name,
                  MailLogDB(memory).CreateSchema() +
                      "INSERT INTO mail_log_table (date, size, status) VALUES (" +
                      std::to_string(date) + ", 0, 0)");
        return kElsewhere + name;
    }

    test::SyslogSocket log_;
};

TEST_F(ProviderTest, OpensAnExternalStoreAsItStandsThroughALink) {
    const std::string path = MakeExternal("an archive='ö'.db", 77);
    for (const bool shared : {false, true}) {
        {
            Provider provider(path);
            EXPECT_TRUE(Links().empty());
            auto store = provider.Get<MailLogDB>(shared);
            ASSERT_EQ(Links().size(), 1U);
            const std::string name = Links()[0].substr(0, Links()[0].find(' '));
            EXPECT_THAT(name, testing::MatchesRegex(
                                  "postcube-server-log(-[0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f])"
                                  "(-[0-9a-f]+)(-[0-9a-f]+)(-[0-9a-f]+)[.]tmp"));
            EXPECT_EQ(Links()[0], name + " " + path);
            EXPECT_EQ(store.GetLatestRecordTime(), 77);
            EXPECT_EQ(store.GetVersion(), 0) << "never upgraded";
            EXPECT_TRUE(store.MainTable().Create({}));
        }
        EXPECT_TRUE(Links().empty());
        EXPECT_TRUE(fs::exists(path));
    }
    EXPECT_EQ(RunOnFile(path, "SELECT COUNT(*) FROM mail_log_table"), (Lines{"3"}));
    EXPECT_EQ(log_.TakeErrors(), Lines());
}

TEST_F(ProviderTest, OpensAnExternalStoreByARelativePath) {
    MakeExternal("archive.db", 5);
    const fs::path before = fs::current_path();
    fs::current_path(kElsewhere);
    for (const char* path : {"archive.db", "./archive.db"}) {
        Provider provider(path);
        EXPECT_EQ(provider.Get<MailLogDB>(false).GetLatestRecordTime(), 5) << path;
    }
    fs::current_path(before);
}

TEST_F(ProviderTest, KeepsAStoreThatIsNamedLikeALink) {
    const std::string path = "/tmp/postcube-server-log-mine.db";
    RunOnFile(path, "VACUUM");
    { Provider provider(path); }
    EXPECT_TRUE(fs::exists(path));
    fs::remove(path);
}

TEST_F(ProviderTest, SaysWhenTheLinkIsGone) {
    const std::string path = MakeExternal("archive.db", 5);
    std::string link;
    {
        Provider provider(path);
        provider.CreateExternalTmpLn("/tmp/postcube-server-log-%%%%.tmp");
        link = "/tmp/" + Links().at(0).substr(0, Links()[0].find(' '));
        fs::remove(link);
    }
    EXPECT_EQ(log_.TakeErrors(), (Lines{"unlink path fail: " + link}));
}

TEST_F(ProviderTest, TellsWhatIsInternal) {
    fs::create_directories(kSpool + "sub");
    fs::create_directory_symlink(kSpool + "sub", kElsewhere + "link");
    for (const std::string& path :
         {kSpool + "a.db", kSpool + "sub/b.db", kElsewhere + "link/c.db"}) {
        EXPECT_EQ(Provider(path).Get<MailLogDB>(false).GetVersion(), 4) << path;
        EXPECT_TRUE(Links().empty()) << path;
    }
    EXPECT_TRUE(fs::exists(kSpool + "sub/c.db"));
}

TEST_F(ProviderTest, ReportsPathsThatLeadNowhere) {
    const std::string none = kElsewhere + "none.db";
    EXPECT_EQ(test::OutcomeOf<ETag::FileSystem>([&] { Provider(none).Get<MailLogDB>(false); }),
              "No such file or directory, external path not exist:" + none);
    EXPECT_FALSE(fs::exists(none));
    EXPECT_THAT(test::OutcomeOf<ETag::FileSystem>([] { Provider(kElsewhere + "no folder/x.db"); }),
                StartsWith("Can't resolve real path, "));
    Provider provider(MakeExternal("archive.db", 5));
    EXPECT_EQ(
        test::OutcomeOf<ETag::DB>([&] { provider.CreateExternalTmpLn("/tmp/no folder/%%%%"); }),
        "DB symlink external path fail, : No such file or directory");
}

TEST_F(ProviderTest, SharesOneSessionForAPathIfAsked) {
    const std::string path = kSpool + "store.db";
    Provider provider(path);
    auto first = provider.Get<MailLogDB>(true);
    auto second = provider.Get<MailLogDB>(true);
    auto own = provider.Get<MailLogDB>(false);
    EXPECT_EQ(&first.GetSession().GetRawSession(), &second.GetSession().GetRawSession());
    EXPECT_EQ(&first.GetSession().GetRawSession(),
              &SingleDBSession::Instance().GetSession(path)->GetRawSession());
    EXPECT_NE(&first.GetSession().GetRawSession(), &own.GetSession().GetRawSession());
}

TEST_F(ProviderTest, TableOfACopyUsesTheSessionOfTheCopy) {
    const std::string path = kSpool + "store.db";
    auto store = std::make_unique<MailLogDB>(Provider(path).Get<MailLogDB>(false));
    MailLogDB copy = *store;
    store.reset();
    EXPECT_TRUE(copy.MainTable().Create({}));
    EXPECT_TRUE(copy.HasRecord());
}

TEST_F(ProviderTest, AnswersForAnEmptyAndForABrokenTable) {
    auto store = Provider(kSpool + "store.db").Get<AdminLogDB>(false);
    EXPECT_FALSE(store.HasRecord());
    EXPECT_TRUE(log_.TakeErrors().empty());
    EXPECT_EQ(store.GetLatestRecordTime(), 0);
    EXPECT_EQ(store.GetOldestRecordTime(), 0);
    EXPECT_THAT(log_.TakeErrors(),
                testing::ElementsAre(StartsWith("get log db latest record time error: "),
                                     StartsWith("get log db oldest record time error: ")));

    record::AdminLog row;
    for (const std::uint64_t date : {5'000'000'000U, 7'000'000'000U, 6'000'000'000U}) {
        row.date = date;
        EXPECT_TRUE(store.MainTable().Create(row));
    }
    EXPECT_TRUE(store.HasRecord());
    EXPECT_EQ(store.GetLatestRecordTime(), 7'000'000'000);
    EXPECT_EQ(store.GetOldestRecordTime(), 5'000'000'000);
    EXPECT_TRUE(log_.TakeErrors().empty());

    store.GetSession().RawQuery("DROP TABLE admin_log");
    EXPECT_FALSE(store.HasRecord());
    EXPECT_EQ(store.MainTable().LastError(), "");
    EXPECT_FALSE(store.MainTable().Create(row));
    EXPECT_THAT(store.MainTable().LastError(), HasSubstr("no such table: admin_log"));
    EXPECT_THAT(log_.TakeErrors().at(0), StartsWith("get log db record count error: "));

    store.GetSession().Disconnect();
    EXPECT_EQ(store.GetVersion(), -1);
    EXPECT_THAT(log_.TakeErrors().at(0), StartsWith("get admin log db version error: "));
}

TEST_F(ProviderTest, AttachesAndDetaches) {
    auto store = Provider(kSpool + "store.db").Get<MailLogDB>(false);
    const std::string path = MakeExternal("with 'quote' and ö.db", 5);
    EXPECT_FALSE(store.Detach("main"));
    EXPECT_TRUE(store.Detach("unknown"));
    EXPECT_TRUE(store.Attach(path, "old"));
    EXPECT_TRUE(store.GetSession().RawQuery("DELETE FROM old.mail_log_table"));
    EXPECT_FALSE(store.Attach(path, "old")) << "the name is in use";
    EXPECT_EQ(log_.TakeErrors(), (Lines{"ATTACH DATABASE \"" + path + "\" AS old"}));
    EXPECT_TRUE(store.Detach("old"));
    EXPECT_FALSE(store.GetSession().RawQuery("DELETE FROM old.mail_log_table"));
    EXPECT_TRUE(store.Detach("old"));
    EXPECT_TRUE(store.Attach(path, "old")) << "and again";
    EXPECT_TRUE(store.GetSession().RawQuery("DETACH DATABASE old"));
    EXPECT_FALSE(store.Detach("old")) << "behind its back";
}

}  // namespace
}  // namespace serverlog::db
