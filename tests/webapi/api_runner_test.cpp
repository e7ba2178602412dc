#include <gtest/gtest.h>
#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/webapi/adminlog/export_v1.h>
#include <mailserver-log/webapi/adminlog/list_user_v1.h>
#include <mailserver-log/webapi/adminlog/list_v1.h>
#include <mailserver-log/webapi/emaillog/export.h>
#include <mailserver-log/webapi/emaillog/list.h>
#include <mailserver-log/webapi/securitylog/export.h>
#include <mailserver-log/webapi/securitylog/list.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/json_value.h"
#include "support/query_call.h"
#include "support/query_fixture.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/store_rows.h"
#include "support/table.h"
#include "support/text_file.h"

namespace serverlog::webapi {
namespace {

namespace fs = std::filesystem;
using test::kSpool;
using test::PayloadOf;
using test::RunOnFile;
using Lines = std::vector<std::string>;

const std::string kMail = kSpool + "aggr_mail_log.db";
const std::string kMailMain = kSpool + "aggr_mail_log_main.db";

/// The seven methods in both forms.
struct Method {
    const char* name;
    std::function<std::tuple<int, Json::Value>(const Json::Value&)> by_json;
    std::function<void(MERO::APIRequest*, MERO::APIResponse*)> by_request;
    bool is_export;
};

template <class T>
Method MethodOf(const char* name, bool is_export = false) {
    return {name, [](const Json::Value& params) { return RunAPIMethod<T>(params); },
            [](MERO::APIRequest* request, MERO::APIResponse* response) {
                RunAPIMethod<T>(request, response);
            },
            is_export};
}

std::vector<Method> Methods() {
    return {MethodOf<adminlog::List_v1>("admin.list"),
            MethodOf<adminlog::ListUser_v1>("admin.users"),
            MethodOf<adminlog::Export_v1>("admin.export", true),
            MethodOf<emaillog::List>("mail.list"),
            MethodOf<emaillog::Export>("mail.export", true),
            MethodOf<securitylog::List>("security.list"),
            MethodOf<securitylog::Export>("security.export", true)};
}

class APIRunnerTest : public test::QueryTest {
 protected:
    /// The lines of the system log with their places, those of other sources left out.
    Lines TakeRunnerLines() {
        Lines lines;
        for (const auto& line : log_.Take()) {
            if (line.text.rfind("lib/webapi/api_runner:", 0) == 0) {
                lines.push_back(line.text);
            }
        }
        return lines;
    }
};

TEST_F(APIRunnerTest, TellsOfAFailureOfTheStoreOnlyAndInJsonOnly) {
    // A percent sign, for all that is printed on the way.
    const std::string broken = kSpool + "broken %s%n.db";
    test::WriteTextFile(broken, "this is no database, and long enough to be read as one");
    const std::string of_store = "DB upgrade failed, path from:" + broken;
    const std::string unknown = "Unknown Failure!";
    const test::Table<std::string, std::string, std::string, std::string> rows = {
        {broken, of_store, "36 Log_API " + of_store, "20 Log_API " + of_store},
        {"/tmp/no such store.db", unknown, "39 " + unknown, "23 " + unknown},
    };
    for (const auto& [path, reason, json_line, request_line] : rows) {
        Json::Value params;
        params["db_path"] = path;
        for (const Method& method : Methods()) {
            SCOPED_TRACE(path + " " + method.name);
            log_.Take();
            EXPECT_EQ(method.by_json(params), make_output(117, reason));
            EXPECT_EQ(TakeRunnerLines(), Lines{"lib/webapi/api_runner:" + json_line});

            MERO::APIRequest request = test::RequestWith(params);
            MERO::APIResponse response;
            method.by_request(&request, &response);
            EXPECT_EQ(response.GetError(), 117);
            EXPECT_TRUE(response.GetBody().isNull());
            EXPECT_EQ(response.IsOutputEnabled(), !method.is_export);
            EXPECT_EQ(TakeRunnerLines(), Lines{"lib/webapi/api_runner:" + request_line});
        }
    }
}

TEST_F(APIRunnerTest, FailsWhereItMayNotBecomeRoot) {
    SKIP_WITHOUT_SECOND_USER();
    test::AddRows<db::MailLogDB>(kMail, {record::MailLog()});
    const std::string result = test::InChild([] {
        test::SetIds(test::kOtherForGood, test::kOtherForGood);
        return PayloadOf<emaillog::List>("{}").asString();
    });
    EXPECT_EQ(result, "117 DB bad session, path from:" + kMail);
}

/// Total and size of the list.
std::string CountsOf(const Json::Value& payload) {
    return payload.isString()
               ? payload.asString()
               : payload["total"].asString() + " " + std::to_string(payload["log_list"].size());
}

std::string Mail(const std::string& params = R"({"status":"any"})") {
    return CountsOf(PayloadOf<emaillog::List>(params));
}

std::vector<record::MailLog> MailRows(std::size_t count) {
    return std::vector<record::MailLog>(count);
}

TEST_F(APIRunnerTest, ListsStoresInTurnInOneProcess) {
    const std::string archive = "/tmp/archive with 'quotes'.db";
    fs::remove(archive);
    test::AddRows<db::MailLogDB>(kMail, MailRows(2));
    fs::copy_file(kMail, archive);
    test::AddRows<db::MailLogDB>(kMailMain, MailRows(3));
    test::AddRows<db::SecurityLogDB>(kSpool + "aggr_security_log.db", {{}, {}, {}, {}});
    test::AddRows<db::SecurityLogDB>(kSpool + "aggr_security_log_main.db", {{}});
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(Mail(), "5 5");
        EXPECT_EQ(Mail(R"({"status":"any","db_path":")" + archive + "\"}"), "2 2");
        EXPECT_EQ(CountsOf(PayloadOf<securitylog::List>("{}")), "5 5");
        EXPECT_EQ(Mail(R"({"status":"any","db_path":"/nowhere/x.db"})"), "117 Unknown Failure!");
        // Only the exact spelling takes the long-term file along.
        EXPECT_EQ(Mail(R"({"status":"any","db_path":"/var/spool//@PostCube-Server/aggr_log/)"
                       R"(aggr_mail_log.db"})"),
                  "2 2");
        EXPECT_EQ(CountsOf(PayloadOf<adminlog::List_v1>("{}")), "0 0") << "made on the way";
        EXPECT_EQ(Mail(R"({"status":"any","db_path":")" + kMailMain + "\"}"), "3 3");
    }
    for (const auto& entry : fs::directory_iterator("/tmp")) {
        EXPECT_FALSE(entry.is_symlink()) << entry.path();
    }
}

TEST_F(APIRunnerTest, DetachesAfterAFailureToo) {
    test::AddRows<db::MailLogDB>(kMail, MailRows(1));
    test::AddRows<db::MailLogDB>(kMailMain, MailRows(1));
    RunOnFile(kMailMain, "ALTER TABLE mail_log_table RENAME TO other");
    EXPECT_EQ(Mail(), "117 Unknown Failure!") << "no such table";
    RunOnFile(kMailMain, "ALTER TABLE other RENAME TO mail_log_table");
    EXPECT_EQ(Mail(), "2 2");

    test::WriteTextFile(kMailMain, "broken, and long enough for it to be noticed");
    EXPECT_EQ(Mail(), "117 DB upgrade failed, path from:" + kMailMain);
    fs::remove(kMailMain);
    EXPECT_EQ(Mail(), "1 1");
}

TEST_F(APIRunnerTest, SeesARotationBetweenTwoCalls) {
    test::AddRows<db::MailLogDB>(kMail, MailRows(2));
    EXPECT_EQ(Mail(), "2 2");
    test::AddRows<db::MailLogDB>(kMailMain, MailRows(7));
    EXPECT_EQ(Mail(), "9 9") << "the first one";
    test::AddRows<db::MailLogDB>(kSpool + "tmp.db", MailRows(9));
    fs::rename(kSpool + "tmp.db", kMailMain);
    RunOnFile(kMail, "DELETE FROM mail_log_table");
    EXPECT_EQ(Mail(), "9 9");
    test::AddRows<db::MailLogDB>(kSpool + "tmp.db", MailRows(4));
    fs::rename(kSpool + "tmp.db", kMail);
    EXPECT_EQ(Mail(), "13 13") << "a current file that was replaced";
}

TEST_F(APIRunnerTest, NeverMixesTwoPicturesOfAFile) {
    test::AddRows<db::MailLogDB>(kMail, MailRows(5));
    for (const std::size_t count : {10U, 500U}) {
        test::AddRows<db::MailLogDB>(kSpool + std::to_string(count) + ".db", MailRows(count));
    }
    fs::copy_file(kSpool + "10.db", kMailMain);
    const test::Child rotation([] {
        for (const char* next = "500.db";; next = next[0] == '1' ? "500.db" : "10.db") {
            fs::copy_file(kSpool + next, kSpool + "tmp.db");
            fs::rename(kSpool + "tmp.db", kMailMain);
        }
        return std::string();
    });
    int old_pictures = 0;
    int new_pictures = 0;
    while (old_pictures < 20 || new_pictures < 20) {
        const std::string counts = Mail();
        ASSERT_TRUE(counts == "15 15" || counts == "505 505") << counts;
        ++(counts == "15 15" ? old_pictures : new_pictures);
    }
}

}  // namespace
}  // namespace serverlog::webapi
