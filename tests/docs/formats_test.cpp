// docs/formats.md is what readers of our files rely on: it must tell what the code does.

#include <gmock/gmock.h>
#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/log/adminlog/logger/line.h>

#include <filesystem>
#include <string>

#include "old_log/create_scripts.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/table.h"
#include "support/text_file.h"

namespace serverlog::db {
namespace {

using testing::HasSubstr;

/// Columns and indexes of a file, one line each, whatever the layout of the SQL that made them.
constexpr char kShape[] =
    "SELECT m.name, p.name, p.type, p.\"notnull\" FROM sqlite_schema m"
    " JOIN pragma_table_info(m.name) p WHERE m.type = 'table' ORDER BY m.name, p.cid;"
    "SELECT m.tbl_name, m.name, p.name FROM sqlite_schema m JOIN pragma_index_info(m.name) p"
    " WHERE m.type = 'index' ORDER BY m.name, p.seqno;";

std::string Document() {
    return test::ReadTextFile(PROJECT_SOURCE_DIRECTORY "/docs/formats.md");
}

/// What stands behind a heading, up to the end of its first block of SQL, of that block alone.
std::string SqlBelow(const std::string& document, const std::string& heading) {
    const std::string fence = "```sql\n";
    const std::size_t start = document.find(fence, document.find(heading)) + fence.size();
    return document.substr(start, document.find("```", start) - start);
}

template <class DB>
void CompareStore(const std::string& name, const std::string& heading) {
    SCOPED_TRACE(name);
    const std::string document = Document();
    const std::string documented = "/tmp/documented-" + name;
    test::RunOnFile(documented, SqlBelow(document, heading));

    DB store = Provider(test::kSpool + name).Get<DB>(false);

    EXPECT_EQ(test::RunOnFile(test::kSpool + name, kShape), test::RunOnFile(documented, kShape));
    EXPECT_EQ(store.GetVersion(), 4) << "the document says 4";
    EXPECT_THAT(document, HasSubstr("| `" + name + "` | `" + store.RotateTable() + "` |"));
    const std::string lock = store.DbLock();
    EXPECT_THAT(document, HasSubstr("`" + lock.substr(lock.rfind('/') + 1) + "`"));
}

TEST(Formats, SchemasAreThoseOfNewStores) {
    test::EmptySpool();
    CompareStore<AdminLogDB>("admin_log.db", "\n### admin\n");
    CompareStore<MailLogDB>("aggr_mail_log.db", "\n### mail\n");
    CompareStore<SecurityLogDB>("aggr_security_log.db", "\n### security\n");
}

TEST(Formats, StatisticsAreMadeAsTold) {
    const test::Table<const char*, std::string> files = {
        {"\n### log_statistic.db\n", statistic_log::StatisticScript()},
        {"\n### security_statistic.db\n", statistic_log::SecurityStatisticScript()},
    };
    for (const auto& [heading, script] : files) {
        for (const char* path : {"/tmp/made.db", "/tmp/documented.db"}) {
            std::filesystem::remove(path);
        }
        test::RunOnFile("/tmp/made.db", script);
        test::RunOnFile("/tmp/documented.db", SqlBelow(Document(), heading));
        EXPECT_EQ(test::RunOnFile("/tmp/made.db", kShape),
                  test::RunOnFile("/tmp/documented.db", kShape))
            << heading;
    }
}

TEST(Formats, MembersOfTheLineStandInTheirOrder) {
    const std::string document = Document();
    std::size_t place = 0;
    for (const std::string_view field : log::adminlog::line::kFields) {
        const std::string row = "\n| `" + std::string(field) + "` |";
        EXPECT_GT(document.find(row), place) << field;
        place = document.find(row);
        EXPECT_NE(place, std::string::npos) << field;
    }
    EXPECT_THAT(document, HasSubstr("priority " + std::to_string(log::adminlog::line::kPriority)));
    EXPECT_THAT(document, HasSubstr("\n    " + std::string(log::adminlog::line::kHead) + ","));
}

}  // namespace
}  // namespace serverlog::db
