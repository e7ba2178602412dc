#include <gtest/gtest.h>
#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/exception/exception.h>

#include <string>
#include <vector>

#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/syslog_socket.h"

namespace serverlog::db {
namespace {

using test::kSpool;
using test::RunOnFile;
using Rows = std::vector<std::string>;

const std::string kPath = kSpool + "store.db";

Rows Names(const char* type) {
    return RunOnFile(kPath, std::string("SELECT name FROM sqlite_master WHERE type = '") + type +
                                "' AND name NOT LIKE 'sqlite_%' ORDER BY name");
}

/// Runs the first steps of a store on a new file and stamps it, as an older release left it.
template <class DB>
void MakeAtVersion(int version) {
    test::EmptySpool();
    auto session = merodbquery::Session::SQLite(kPath);
    const auto steps = DB(session).UpgradeFuncs();
    for (int i = 0; i <= version; ++i) {
        ASSERT_TRUE(steps[static_cast<std::size_t>(i)](session)) << i;
    }
    session.RawQuery("PRAGMA user_version=" + std::to_string(version));
}

template <class DB>
Rows IndicesOfNewest() {
    test::EmptySpool();
    Provider(kPath).Get<DB>(false);
    return Names("index");
}

class Migration : public testing::Test {
 protected:
    test::SyslogSocket log_;
};

/// Adds rows to a store of each older version and expects these of the newest one.
template <class DB>
void ExpectRowsSurvive(const std::string& insert, const Rows& rows) {
    const Rows indices = IndicesOfNewest<DB>();
    for (int version = 1; version <= 3; ++version) {
        SCOPED_TRACE("from version " + std::to_string(version));
        MakeAtVersion<DB>(version);
        RunOnFile(kPath, insert);
        DB store = Provider(kPath).Get<DB>(false);
        EXPECT_EQ(store.GetVersion(), 4);
        EXPECT_EQ(RunOnFile(kPath, "SELECT * FROM " + store.RotateTable()), rows);
        EXPECT_EQ(Names("table"), Rows{store.RotateTable()});
        EXPECT_EQ(Names("index"), indices);
    }
}

TEST_F(Migration, RowsSurviveFromEveryVersion) {
    ExpectRowsSurvive<AdminLogDB>(
        "INSERT INTO admin_log (tab_type, statement, user, uid, date, ip, server, webapi_param)"
        " VALUES (3, 'sö', 'u', 5, 7, 'i', 'v', '{\"a\":1}\n'),"
        " (4, NULL, 'u2', 6, 8, NULL, NULL, NULL)",
        {"3|sö|u|5|7|i|v|{\"a\":1}\n", "4|NULL|u2|6|8|NULL|NULL|NULL"});
    ExpectRowsSurvive<MailLogDB>(
        "INSERT INTO mail_log_table (message_id, queue_id, date, mail_from, mail_to, size, status,"
        " host) VALUES ('m', 'q', 1, 'f', 't', 2, 3, 'h')",
        {"m|q|1|f|t|2|3|h|NULL|NULL"});
    EXPECT_EQ(Provider(kPath).Get<MailLogDB>(false).MainTable().List().at(0).ori_mail_to, "");
    ExpectRowsSurvive<SecurityLogDB>(
        "INSERT INTO security_log_table (date, src, type, event, host)"
        " VALUES (1, 's', 't', 'e', 'h')",
        {"1|s|t|e|h|NULL|NULL|NULL"});
    EXPECT_EQ(Provider(kPath).Get<SecurityLogDB>(false).MainTable().List().at(0).recipient, "");
    EXPECT_TRUE(log_.TakeErrors().empty());
}

TEST_F(Migration, TablesOfAnOlderWriterPassWithAnUnsetVersion) {
    const Rows mail_indices = IndicesOfNewest<MailLogDB>();
    RunOnFile(kPath,
              "PRAGMA user_version = 0; CREATE INDEX to_index ON mail_log_table (mail_to);"
              "CREATE INDEX mail_log_table_host_idx ON mail_log_table (host)");
    EXPECT_EQ(Provider(kPath).Get<MailLogDB>(false).GetVersion(), 4);
    EXPECT_EQ(Names("index"), mail_indices);

    const Rows security_indices = IndicesOfNewest<SecurityLogDB>();
    RunOnFile(kPath,
              "PRAGMA user_version = 0; CREATE INDEX src_index ON security_log_table (src);"
              "CREATE INDEX security_log_table_event_idx ON security_log_table (event)");
    EXPECT_EQ(Provider(kPath).Get<SecurityLogDB>(false).GetVersion(), 4);
    EXPECT_EQ(Names("index"), security_indices);
    EXPECT_TRUE(log_.TakeErrors().empty());
}

TEST_F(Migration, OneColumnAnswersForBothThatAStepAdds) {
    MakeAtVersion<SecurityLogDB>(2);
    RunOnFile(kPath, "ALTER TABLE security_log_table ADD COLUMN sender TEXT");
    EXPECT_EQ(Provider(kPath).Get<SecurityLogDB>(false).GetVersion(), 4);
    EXPECT_EQ(RunOnFile(kPath, "SELECT name FROM pragma_table_info('security_log_table')"),
              (Rows{"date", "src", "type", "event", "host", "sender", "subject"}));
}

TEST_F(Migration, ResumesWithTheStepThatFailed) {
    MakeAtVersion<AdminLogDB>(1);
    RunOnFile(kPath,
              "INSERT INTO admin_log (tab_type, user, uid, date) VALUES (1, 'u', 2, 3);"
              "DROP TABLE webapi");
    EXPECT_THROW(Provider(kPath).Get<AdminLogDB>(false), Exception<ETag::DB>);
    EXPECT_EQ(log_.TakeErrors(), (Rows{"exec query error: DROP TABLE webapi",
                                       "DB upgrade failed, path from:" + kPath}));
    EXPECT_EQ(RunOnFile(kPath, "PRAGMA user_version"), (Rows{"2"}));
    EXPECT_EQ(RunOnFile(kPath, "SELECT id, webapi FROM admin_log"), (Rows{"1|NULL"}));

    RunOnFile(kPath, "CREATE TABLE webapi (id INTEGER)");
    EXPECT_EQ(Provider(kPath).Get<AdminLogDB>(false).GetVersion(), 4);
    EXPECT_EQ(RunOnFile(kPath, "SELECT * FROM admin_log"), (Rows{"1|NULL|u|2|3|NULL|NULL|NULL"}));
}

}  // namespace
}  // namespace serverlog::db
