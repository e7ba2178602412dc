#include <gtest/gtest.h>
#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/exception/exception.h>

#include <algorithm>
#include <filesystem>
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

TEST_F(Migration, FirstAdminSchemaIsTheOldOne) {
    MakeAtVersion<AdminLogDB>(1);
    EXPECT_EQ(
        RunOnFile(kPath, "SELECT sql FROM sqlite_master WHERE name IN ('webapi', 'admin_log')"),
        (Rows{
            "CREATE TABLE webapi (\n\tid INTEGER PRIMARY KEY AUTOINCREMENT,\n\tfunc_name TEXT NOT "
            "NULL,\n\tlog_template TEXT NOT NULL,\n\ttab_type INTEGER NOT NULL,\n\tshould_record "
            "BOOLEAN DEFAULT TRUE,\n\tCONSTRAINT func_name_log_template_unique UNIQUE (func_name, "
            "log_template))",
            "CREATE TABLE admin_log (\n\tid INTEGER PRIMARY KEY AUTOINCREMENT,\n\ttab_type INTEGER "
            "NOT NULL,\n\tstatement TEXT,\n\tuser TEXT NOT NULL,\n\tuid BIGINT NOT NULL,\n\tdate "
            "BIGINT NOT NULL,\n\tip TEXT,\n\tserver TEXT,\n\twebapi_param TEXT,\n\twebapi "
            "INTEGER,\n\tFOREIGN KEY (webapi) REFERENCES\twebapi (id))"}));
    EXPECT_EQ(Names("index"), (Rows{"date_idx", "func_name_idx", "ip_idx", "server_idx",
                                    "statement_idx", "tab_type_idx", "user_idx"}));
}

TEST_F(Migration, AdminRowsSurviveFromEveryVersion) {
    const Rows indices = IndicesOfNewest<AdminLogDB>();
    for (int version = 1; version <= 3; ++version) {
        SCOPED_TRACE("from version " + std::to_string(version));
        MakeAtVersion<AdminLogDB>(version);
        RunOnFile(kPath,
                  "INSERT INTO admin_log (tab_type, statement, user, uid, date, ip, server, "
                  "webapi_param) VALUES (3, 'sö', 'u', 5, 7, 'i', 'v', '{\"a\":1}\n'),"
                  " (4, NULL, 'u2', 6, 8, NULL, NULL, NULL)");
        EXPECT_EQ(Provider(kPath).Get<AdminLogDB>(false).GetVersion(), 4);
        EXPECT_EQ(RunOnFile(kPath, "SELECT * FROM admin_log ORDER BY date"),
                  (Rows{"3|sö|u|5|7|i|v|{\"a\":1}\n", "4|NULL|u2|6|8|NULL|NULL|NULL"}));
        EXPECT_EQ(Names("table"), (Rows{"admin_log"}));
        EXPECT_EQ(Names("index"), indices);
        EXPECT_EQ(RunOnFile(kPath, "PRAGMA journal_mode"), (Rows{"wal"}));
    }
    EXPECT_TRUE(log_.TakeErrors().empty());
}

TEST_F(Migration, MailRowsSurviveFromEveryVersion) {
    const Rows indices = IndicesOfNewest<MailLogDB>();
    for (int version = 1; version <= 3; ++version) {
        SCOPED_TRACE("from version " + std::to_string(version));
        MakeAtVersion<MailLogDB>(version);
        RunOnFile(
            kPath,
            "INSERT INTO mail_log_table (message_id, queue_id, date, mail_from, mail_to, size, "
            "status, host) VALUES ('m', 'q', 1, 'f', 't', 2, 3, 'h')");
        auto store = Provider(kPath).Get<MailLogDB>(false);
        EXPECT_EQ(store.GetVersion(), 4);
        EXPECT_EQ(RunOnFile(kPath, "SELECT * FROM mail_log_table"),
                  (Rows{"m|q|1|f|t|2|3|h|NULL|NULL"}));
        EXPECT_EQ(store.MainTable().List().at(0).ori_mail_to, "");
        EXPECT_EQ(Names("index"), indices);
    }
    EXPECT_TRUE(log_.TakeErrors().empty());
}

TEST_F(Migration, SecurityRowsSurviveFromEveryVersion) {
    const Rows indices = IndicesOfNewest<SecurityLogDB>();
    for (int version = 1; version <= 3; ++version) {
        SCOPED_TRACE("from version " + std::to_string(version));
        MakeAtVersion<SecurityLogDB>(version);
        RunOnFile(kPath,
                  "INSERT INTO security_log_table (date, src, type, event, host) "
                  "VALUES (1, 's', 't', 'e', 'h')");
        auto store = Provider(kPath).Get<SecurityLogDB>(false);
        EXPECT_EQ(store.GetVersion(), 4);
        EXPECT_EQ(RunOnFile(kPath, "SELECT * FROM security_log_table"),
                  (Rows{"1|s|t|e|h|NULL|NULL|NULL"}));
        EXPECT_EQ(store.MainTable().List().at(0).recipient, "");
        EXPECT_EQ(Names("index"), indices);
    }
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
    const auto lines = log_.TakeErrors();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], "exec query error: DROP TABLE webapi");
    EXPECT_EQ(lines[1], "DB upgrade failed, path from:" + kPath);
    EXPECT_EQ(RunOnFile(kPath, "PRAGMA user_version"), (Rows{"2"}));
    EXPECT_EQ(RunOnFile(kPath, "SELECT id, webapi FROM admin_log"), (Rows{"1|NULL"}));

    RunOnFile(kPath, "CREATE TABLE webapi (id INTEGER)");
    EXPECT_EQ(Provider(kPath).Get<AdminLogDB>(false).GetVersion(), 4);
    EXPECT_EQ(RunOnFile(kPath, "SELECT * FROM admin_log"), (Rows{"1|NULL|u|2|3|NULL|NULL|NULL"}));
}

}  // namespace
}  // namespace serverlog::db
