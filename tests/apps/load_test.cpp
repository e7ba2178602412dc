#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/table.h"

namespace {

using test::Ended;
using test::Program;
using testing::ElementsAre;
using testing::HasSubstr;

using Texts = std::vector<std::string>;

class Load : public testing::Test {
 protected:
    Load() { test::EmptySpool(); }

    static Texts Subjects() {
        return test::RunOnFile(test::kSpool + "aggr_mail_log.db",
                               "SELECT subject FROM mail_log_table ORDER BY rowid");
    }
};

TEST_F(Load, FillsEveryStore) {
    const test::Table<const char*, const char*, const char*, const char*, const char*> rows = {
        {"admin",
         R"({"tab_type":-1,"uid":18446744073709551615,"date":4294967296,"webapi_param":{"a":[1]}})",
         "admin_log.db",
         "SELECT tab_type||'|'||uid||'|'||date||'|'||statement||'|'||webapi_param FROM admin_log",
         "-1|-1|4294967296||{\"a\":[1]}\n"},
        {"mail", R"({"date":7,"size":8,"status":3,"mail_from":"a","ori_mail_to":"b'\u00e4"})",
         "aggr_mail_log.db",
         "SELECT date||size||status||mail_from||mail_to||ori_mail_to FROM mail_log_table",
         "783ab'\xc3\xa4"},
        {"security", R"({"date":7,"type":"spam","event":"e\u0000f"})", "aggr_security_log.db",
         "SELECT date||type||hex(event) FROM security_log_table", "7spam650066"},
    };
    for (const auto& [store, record, file, query, cells] : rows) {
        SCOPED_TRACE(store);
        EXPECT_THAT(Program::Run({"load", store}, record), Ended(0, "", "loaded 1\n"));
        EXPECT_THAT(test::RunOnFile(test::kSpool + file, query), ElementsAre(cells));
    }
}

TEST_F(Load, StopsAtALineThatItCannotRead) {
    const test::Table<const char*, const char*> rows = {
        {"{", "line 3: the line is no JSON"},
        {"{} {}", "line 3: the line is no JSON"},
        {R"({"size":/**/1})", "line 3: the line is no JSON"},
        {R"({"subject":"c",})", "line 3: the line is no JSON"},
        {"[]", "line 3: "},
        {R"({"subjekt":"x"})", "subjekt"},
        {R"({"date":"x"})", "date"},
        {R"({"size":2147483648})", "size"},
        {R"({"subject":1})", "subject"},
    };
    for (const auto& [line, error] : rows) {
        SCOPED_TRACE(line);
        std::filesystem::remove(test::kSpool + "aggr_mail_log.db");
        const std::string input = R"({"subject":"a"})"
                                  "\r\n \n" +
                                  std::string(line) + "\n" + R"({"subject":"b"})";
        const Program::Result stopped = Program::Run({"load", "mail"}, input);
        EXPECT_EQ(stopped.status, 1);
        EXPECT_THAT(stopped.error, HasSubstr(error));
        EXPECT_THAT(stopped.error, HasSubstr("line 3: "));
        EXPECT_THAT(stopped.error, HasSubstr("the 1 records before it are stored"));
        EXPECT_THAT(Subjects(), ElementsAre("a"));

        const Program::Result kept_going =
            Program::Run({"load", "mail", "-", "--keep-going", "--batch", "1"}, input);
        EXPECT_EQ(kept_going.status, 1);
        EXPECT_THAT(kept_going.error, HasSubstr("line 3: "));
        EXPECT_THAT(kept_going.error, HasSubstr("loaded 2, unreadable 1\n"));
        EXPECT_THAT(Subjects(), ElementsAre("a", "a", "b"));
    }
}

TEST_F(Load, TakesManyRows) {
    std::string input;
    for (int i = 0; i < 2500; ++i) {
        input += "{\"subject\":\"" + std::to_string(i) + "\"}\n";
    }
    EXPECT_EQ(Program::Run({"load", "mail"}, input).error, "loaded 2500\n");
    EXPECT_EQ(Subjects().size(), 2500U);
}

TEST_F(Load, SaysWhyTheStoreDoesNotTakeARow) {
    ASSERT_EQ(Program::Run({"load", "mail"}, R"({"subject":"a"})").status, 0);
    test::RunOnFile(test::kSpool + "aggr_mail_log.db",
                    "CREATE TRIGGER full BEFORE INSERT ON mail_log_table WHEN new.size > 9 "
                    "BEGIN SELECT RAISE(ABORT, 'it is too large'); END");
    const Program::Result result =
        Program::Run({"load", "mail"}, "{\"subject\":\"b\"}\n{\"size\":10}\n{\"subject\":\"c\"}");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.error, HasSubstr("the store does not take a row: "));
    EXPECT_THAT(result.error, HasSubstr(": it is too large; the first 0 records are stored"));
    EXPECT_THAT(Subjects(), ElementsAre("a"));
}

TEST_F(Load, NeedsTheFolderOfTheStore) {
    std::filesystem::rename(test::kSpool, "/volume1/away");
    const Program::Result result = Program::Run({"load", "mail"}, "{}");
    std::filesystem::rename("/volume1/away", test::kSpool);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.error,
                HasSubstr("cannot open the store " + test::kSpool + "aggr_mail_log.db"));
    EXPECT_EQ(Program::Run({"load", "mail", "/tmp/none"}).status, 1);
}

}  // namespace
