#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/sqlite_file.h"

namespace {

using test::Program;
using testing::ElementsAre;
using testing::HasSubstr;

using Texts = std::vector<std::string>;

const std::string kFolder = "/var/spool/@PostCube-Server/aggr_log/";
const Program::Environment kUtc = {{"TZ", "UTC0"}};

void LoadRows(const std::string& store, const std::string& rows) {
    const Program::Result result = Program::Run({"load", store}, rows);
    ASSERT_EQ(result.status, 0) << result.error;
}

class List : public testing::Test {
 protected:
    static void SetUpTestSuite() {
        LoadRows("mail",
                 R"({"date":100,"size":5,"status":1,"mail_from":"ann@x.org","mail_to":"bob@y.org",)"
                 R"("subject":"Gr\u00fc\u00dfe","host":"h"})"
                 "\n"
                 R"({"date":86400,"size":50,"status":0,"mail_from":"bob@y.org",)"
                 R"("subject":"=1+1,\"x\"\r\n","queue_id":"Q","message_id":"M"})"
                 "\n"
                 R"({"date":172799,"size":500,"status":4,"ori_mail_to":"\u001b[2J%_"})"
                 "\n"
                 R"({"date":172800,"size":7,"status":2,"subject":"\u6f22\u5b57"})");
        LoadRows("admin",
                 R"({"date":1,"tab_type":20,"user":"admin","uid":1024,"statement":"Deleted",)"
                 R"x("ip":"192.0.2.7","server":"(192.0.2.1)","webapi_param":{"a":1}})x"
                 "\n"
                 R"({"date":2,"tab_type":21,"user":"eve","statement":"Set [a]"})");
        LoadRows("security",
                 R"({"date":1,"type":"spam","src":"192.0.2.9","sender":"s@x.org","event":"E"})"
                 "\n"
                 R"({"date":2,"type":"spf","recipient":"r@x.org","host":"H","subject":"S"})");
    }

    static Program::Result Run(const std::string& store, Texts arguments) {
        arguments.insert(arguments.begin(), {"list", store});
        return Program::Run(arguments, {}, kUtc);
    }

    /// The dates of the rows listed.
    static Texts Dates(const std::string& store, Texts arguments) {
        arguments.insert(arguments.end(), {"--format", "ndjson"});
        const Program::Result result = Run(store, arguments);
        EXPECT_EQ(result.status, 0) << result.error;
        Texts dates;
        std::istringstream lines(result.output);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t begin = line.find("\"date\":") + 7;
            dates.push_back(line.substr(begin, line.find(',', begin) - begin));
        }
        return dates;
    }
};

TEST_F(List, FiltersSortsAndPages) {
    const struct {
        const char* store;
        Texts arguments;
        Texts dates;
    } rows[] = {
        {"mail", {}, {"172800", "172799", "86400", "100"}},
        {"mail", {"--ascending"}, {"100", "86400", "172799", "172800"}},
        {"mail", {"--sort", "size"}, {"172799", "86400", "172800", "100"}},
        {"mail", {"--limit", "2"}, {"172800", "172799"}},
        {"mail", {"--limit", "0"}, {}},
        {"mail", {"--offset", "3"}, {"100"}},
        {"mail", {"--offset", "1", "--limit", "1"}, {"172799"}},
        {"mail", {"--offset", "9"}, {}},
        {"mail", {"--since", "1970-01-02"}, {"172800", "172799", "86400"}},
        {"mail", {"--since", "1970-01-02", "--until", "1970-01-02"}, {"172799", "86400"}},
        {"mail", {"--until", "1970-01-01 00:01:40"}, {"100"}},
        {"mail", {"--since", "1h"}, {}},
        {"mail", {"--from", "BOB@"}, {"86400"}},
        {"mail", {"--from", "@", "--to", "bob"}, {"100"}},
        {"mail", {"--subject", "GR\xc3\x9cSSE"}, {"100"}},
        {"mail", {"--original-to", "%_"}, {"172799"}},
        {"mail", {"--status", "receive"}, {"100"}},
        {"mail", {"--status", "4"}, {"172799"}},
        {"mail", {"--host", "h"}, {"100"}},
        {"mail", {"--queue-id", "q"}, {"86400"}},
        {"mail", {"--message-id", "m"}, {"86400"}},
        {"mail", {"--find", "bob"}, {"86400", "100"}},
        {"mail", {"--find", "bob", "--status", "send"}, {"86400"}},
        {"mail", {"--find", "' OR 1=1 --"}, {}},
        {"admin", {"--type", "20"}, {"1"}},
        {"admin", {"--user", "EVE"}, {"2"}},
        {"admin", {"--ip", "192"}, {"1"}},
        {"admin", {"--server", "2.1)"}, {"1"}},
        {"admin", {"--statement", "[A]"}, {"2"}},
        {"admin", {"--find", "eve"}, {"2"}},
        {"security", {"--type", "sp"}, {}},
        {"security", {"--type", "spam"}, {"1"}},
        {"security", {"--source", "2.9"}, {"1"}},
        {"security", {"--sender", "s@"}, {"1"}},
        {"security", {"--recipient", "R@"}, {"2"}},
        {"security", {"--event", "e"}, {"1"}},
        {"security", {"--host", "h", "--subject", "s"}, {"2"}},
    };
    for (const auto& row : rows) {
        std::string name = row.store;
        for (const std::string& argument : row.arguments) {
            name += " " + argument;
        }
        EXPECT_EQ(Dates(row.store, row.arguments), row.dates) << name;
    }
}

TEST_F(List, ShowsATable) {
    EXPECT_EQ(Run("mail", {}).output,
              "DATE                 STATUS   FROM       TO         SIZE  SUBJECT\n"
              "1970-01-03 00:00:00  bounce                         7     \xe6\xbc\xa2\xe5\xad\x97\n"
              "1970-01-02 23:59:59  4                              500\n"
              "1970-01-02 00:00:00  send     bob@y.org             50    =1+1,\"x\"\\r\\n\n"
              "1970-01-01 00:01:40  receive  ann@x.org  bob@y.org  5     "
              "Gr\xc3\xbc\xc3\x9f"
              "e\n");
    EXPECT_EQ(Run("admin", {"--limit", "1", "--offset", "1"}).output,
              "DATE                 USER   ADDRESS    SERVER       TAB  STATEMENT\n"
              "1970-01-01 00:00:01  admin  192.0.2.7  (192.0.2.1)  20   Deleted\n");
    EXPECT_EQ(Run("security", {"--limit", "0"}).output,
              "DATE  TYPE  SOURCE  SENDER  RECIPIENT  SUBJECT  EVENT\n");
}

TEST_F(List, WritesCsv) {
    EXPECT_EQ(Run("mail", {"--format", "csv", "--until", "1970-01-02"}).output,
              "date,size,status,host,mail_from,mail_to,message_id,ori_mail_to,queue_id,subject\r\n"
              "1970-01-02 23:59:59,500,4,,,,,\x1b[2J%_,,\r\n"
              "1970-01-02 00:00:00,50,send,,bob@y.org,,M,,Q,\"'=1+1,\"\"x\"\"\r\n\"\r\n"
              "1970-01-01 00:01:40,5,receive,h,ann@x.org,bob@y.org,,,,Gr\xc3\xbc\xc3\x9f"
              "e\r\n");
}

TEST_F(List, WritesJson) {
    EXPECT_EQ(Run("admin", {"--format", "json"}).output,
              R"x([
{"date":2,"ip":"","server":"","statement":"Set [a]","tab_type":21,"uid":0,"user":"eve","webapi_param":null},
{"date":1,"ip":"192.0.2.7","server":"(192.0.2.1)","statement":"Deleted","tab_type":20,"uid":1024,"user":"admin","webapi_param":{"a":1}}
]
)x");
    EXPECT_EQ(Run("admin", {"--format", "json", "--limit", "0"}).output, "[]\n");
    EXPECT_EQ(
        Run("security", {"--format", "ndjson", "--type", "spf"}).output,
        R"({"date":2,"event":"","host":"H","recipient":"r@x.org","sender":"","src":"","subject":"S","type":"spf"})"
        "\n");
}

TEST_F(List, ReadsTheLongTermFileToo) {
    std::filesystem::copy(kFolder + "aggr_mail_log.db", "/tmp/archive.db");
    test::RunOnFile("/tmp/archive.db",
                    "UPDATE mail_log_table SET date = date + 1, subject = CAST(X'61FF' AS TEXT)");
    std::filesystem::copy("/tmp/archive.db", kFolder + "aggr_mail_log_main.db");
    EXPECT_EQ(Dates("mail", {"--ascending"}),
              (Texts{"100", "101", "86400", "86401", "172799", "172800", "172800", "172801"}));
    EXPECT_EQ(Dates("mail", {"--offset", "7"}), Texts{"100"});
    EXPECT_EQ(Dates("mail", {"--status", "send"}), (Texts{"86401", "86400"}));
    std::filesystem::remove(kFolder + "aggr_mail_log_main.db");

    EXPECT_EQ(Dates("mail", {"--file", "/tmp/archive.db"}),
              (Texts{"172801", "172800", "86401", "101"}));
    EXPECT_THAT(Run("mail", {"--file", "/tmp/archive.db", "--format", "json"}).output,
                HasSubstr("\"subject\":\"a\xef\xbf\xbd\""));
    EXPECT_THAT(Run("mail", {"--file", "/tmp/archive.db"}).output, HasSubstr(" a\xef\xbf\xbd\n"));
}

TEST_F(List, SaysWhyItCannotRead) {
    const Program::Result missing = Run("mail", {"--file", kFolder + "none.db"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.error, HasSubstr("there is no file " + kFolder + "none.db"));
    EXPECT_FALSE(std::filesystem::exists(kFolder + "none.db"));

    std::filesystem::copy(kFolder + "aggr_mail_log.db", "/tmp/broken.db");
    test::RunOnFile("/tmp/broken.db", "UPDATE mail_log_table SET date = NULL WHERE date = 86400");
    const Program::Result broken =
        Run("mail", {"--file", "/tmp/broken.db", "--format", "ndjson", "--sort", "size"});
    EXPECT_EQ(broken.status, 1);
    EXPECT_THAT(broken.error, HasSubstr("cannot read all of /tmp/broken.db: Null value"));
    EXPECT_THAT(broken.output, HasSubstr("172799"));

    const Program::Result other = Run("mail", {"--file", "/etc/passwd"});
    EXPECT_EQ(other.status, 1);
    EXPECT_EQ(other.output, "");
}

}  // namespace
