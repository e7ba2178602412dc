#include <gtest/gtest.h>
#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/webapi/adminlog/list_user_v1.h>
#include <mailserver-log/webapi/adminlog/list_v1.h>

#include <filesystem>
#include <set>
#include <string>

#include "support/json_value.h"
#include "support/query_call.h"
#include "support/query_fixture.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/store_rows.h"
#include "support/table.h"

namespace serverlog::webapi {
namespace {

using adminlog::List_v1;
using adminlog::ListUser_v1;
using test::kSpool;
using test::ListOf;

namespace fs = std::filesystem;

const std::string kPath = kSpool + "admin_log.db";
constexpr char kTexts[] = "/var/packages/PostCube-Server/target/app/texts/";
constexpr char kSystemTexts[] = "/usr/mero/meroman/webman/texts/";
constexpr std::uint64_t kMidnight = 1795305600;  // 2026-11-22 00:00:00 UTC

record::AdminLog Row(int tab, const char* server, const char* statement, const char* user,
                     const char* ip, std::uint64_t date) {
    record::AdminLog row;
    row.tab_type = tab;
    row.server = server;
    row.statement = statement;
    row.user = user;
    row.ip = ip;
    row.date = date;
    return row;
}

/// Rows are known by their servers.
class AdminListTest : public test::QueryTest {
 protected:
    AdminListTest() {
        test::AddRows<db::AdminLogDB>(
            kPath, {Row(7, "a", "Größe [5] was changed.", "admin", "192.0.2.1", kMidnight),
                    Row(21, "b", "Domain [x] was created.", "Admin", "2001:db8::A", kMidnight + 1),
                    Row(3, "c", "spam_filter 100%", "ann", "192.0.2.11", kMidnight - 1),
                    Row(99, "d", "", "ann", "", kMidnight + 86400)});
    }

    /// The servers that a search finds, newest first, with titles in the JSON form.
    static std::string Found(const std::string& params, const char* titles) {
        List_v1 method(test::JsonOf(params));
        method.SetTestString(test::JsonOf(titles));
        const Json::Value payload = std::get<1>(method.RunByJson());
        return test::internal::Members(payload["log_list"], "server");
    }
};

TEST_F(AdminListTest, ShowsARow) {
    EXPECT_EQ(test::TextOf(test::PayloadOf<List_v1>(R"({"ip":"db8::a","offset":0})")),
              test::TextOf(test::JsonOf(
                  R"({"total":1,"offset":0,"log_list":[{"tab_type":21,"user":"Admin","server":"b",
                      "statement":"Domain [x] was created.","date":"2026-11-22 00:00:01",
                      "ip":"2001:db8::A"}]})")));
}

TEST_F(AdminListTest, FindsByAdvanceSearch) {
    const test::Table<const char*, const char*> rows = {
        {"{}", "d b a c"},
        {R"({"user":"admin"})", "a"},
        {R"({"user":"adm"})", ""},
        {R"({"ip":"192.0.2.1"})", "a c"},
        {R"({"statement":"GRÖSSE"})", "a"},
        {R"({"statement":"100%"})", "c"},
        {R"({"server":"B"})", "b"},
        {R"({"tab_type":"21"})", "b"},
        {R"({"tab_type":"2"})", ""},
        {R"({"tab_type":21})", "d b a c"},
        {R"({"tab_type":"99"})", "d"},
        {R"({"user":"ann","ip":"192"})", "c"},
        {R"({"date_from":"2026/11/22","date_to":"2026/11/23"})", "d b a"},
        {R"({"date_from":"2026/11/22","date_to":"2026/11/22"})", "a"},
        {R"({"action":"list","query":"spam","user":"ann"})", "d c"},
    };
    for (const auto& [params, expected] : rows) {
        EXPECT_EQ(ListOf<List_v1>(params, "server"), expected) << params;
        EXPECT_EQ(test::RequestListOf<List_v1>(params, "server"), expected) << params;
    }
}

TEST_F(AdminListTest, FindsBySimpleSearch) {
    const char kTitles[] = R"({"3":"Account","7":"Spam filter","21":"Domäne","22":null,
                               "16":"Log list","17":"Log settings","99":"Log"})";
    const test::Table<const char*, const char*, const char*> rows = {
        {"spam", "null", "c"},         {"spam", kTitles, "a c"},
        {"SPAM FILTER", kTitles, "a"}, {"domÄNE", kTitles, "b"},
        {"domain", kTitles, "b"},      {"account", kTitles, "c"},
        {"log", kTitles, ""},          {"ann", kTitles, "d c"},
        {"2001", kTitles, "b"},        {"100%", R"({"7":"100%","21":"100%"})", "c"},
        {"größe", kTitles, "a"},       {"nothing", kTitles, ""},
    };
    for (const auto& [query, titles, expected] : rows) {
        Json::Value params;
        params["query"] = query;
        EXPECT_EQ(Found(test::TextOf(params), titles), expected) << query << titles;
    }
    EXPECT_EQ(Found(R"({"action":"find"})", kTitles), "d b a c");
}

TEST_F(AdminListTest, SortsByTheClientsFields) {
    const test::Table<const char*, const char*> rows = {
        {"date", "c a b d"},   {"tab_type", "c a b d"},  {"user", "b a c d"}, {"ip", "d a c b"},
        {"server", "a b c d"}, {"statement", "c a b d"}, {"uid", "c a b d"},  {"", "c a b d"},
    };
    for (const auto& [field, expected] : rows) {
        const std::string params =
            R"({"sort_direction":"ASC","sort_by":")" + std::string(field) + "\"}";
        const std::string servers = ListOf<List_v1>(params, "server");
        // Rows of one user come in any order.
        EXPECT_EQ(std::string(field) == "user" ? servers.substr(0, 3) : servers,
                  std::string(field) == "user" ? "b a" : expected)
            << field;
    }
}

TEST_F(AdminListTest, KnowsTheTabsByTheShippedEnglishTitles) {
    class Titles : public List_v1 {
     public:
        using List_v1::List_v1;
        Json::Value Get() {
            SetLocalizedString();
            return tab_titles_;
        }
    };
    const std::string folder = PROJECT_SOURCE_DIRECTORY "/texts/";
    fs::create_directory_symlink(folder + "enu", std::string(kTexts) + "enu");
    fs::create_directory_symlink(folder + "platform/enu", std::string(kSystemTexts) + "enu");
    const Json::Value titles = Titles(Json::objectValue).Get();
    EXPECT_EQ(titles.size(), 32U);
    for (const Json::Value& title : titles) {
        EXPECT_NE(title.asString(), "") << titles;
    }
    test::AddRows<db::AdminLogDB>(kPath, {Row(23, "e", "", "", "", 1), Row(6, "f", "", "", "", 2)});
    const test::Table<const char*, const char*> rows = {
        {R"({"query":"delegation"})", "f"},
        {R"({"query":"group"})", "e"},
        {R"({"query":"delegation","lang":"ger"})", "f"},
        {R"({"query":"delegierung","lang":"ger"})", ""},
        {R"({"query":"log"})", ""},
    };
    for (const auto& [params, expected] : rows) {
        EXPECT_EQ(test::RequestListOf<List_v1>(params, "server"), expected) << params;
    }
    EXPECT_EQ(ListOf<List_v1>(R"({"query":"delegation"})", "server"), "")
        << "the JSON form has no titles";
    fs::remove_all(kSystemTexts);
    EXPECT_EQ(test::RequestListOf<List_v1>(R"({"query":"delegation"})", "server"), "")
        << "both folders have to be there";
    fs::create_directory(kSystemTexts);
}

std::set<std::string> Users(const Json::Value& payload) {
    std::set<std::string> users;
    for (const Json::Value& element : payload["users"]) {
        EXPECT_TRUE(users.insert(element["user"].asString()).second) << "each once";
    }
    return users;
}

TEST_F(AdminListTest, ListsEachUserOnce) {
    const std::set<std::string> all = {"Admin", "admin", "ann"};
    EXPECT_EQ(Users(test::PayloadOf<ListUser_v1>("{}")), all);
    EXPECT_EQ(Users(test::PayloadOf<ListUser_v1>(R"({"db_path":""})")), all);
    EXPECT_EQ(Users(test::PayloadOf<ListUser_v1>(R"({"db_path":["x"]})")), all);
    EXPECT_EQ(test::TextOf(test::PayloadOf<ListUser_v1>("{}").getMemberNames()[0]), "\"users\"");

    test::AddRows<db::AdminLogDB>(kSpool + "admin_log_main.db",
                                  {Row(1, "", "", "old", "", 1), Row(1, "", "", "ann", "", 1)});
    for (const char* params :
         {"{}", R"({"db_path":"/var/spool/@PostCube-Server/aggr_log/admin_log.db"})"}) {
        MERO::APIRequest request = test::RequestWith(test::JsonOf(params));
        MERO::APIResponse response;
        RunAPIMethod<ListUser_v1>(&request, &response);
        EXPECT_EQ(Users(response.GetBody()),
                  (std::set<std::string>{"Admin", "admin", "ann", "old"}));
    }
    test::RunOnFile(kPath, "DELETE FROM admin_log");
    test::RunOnFile(kSpool + "admin_log_main.db", "DELETE FROM admin_log");
    EXPECT_EQ(test::TextOf(test::PayloadOf<ListUser_v1>("{}")), R"({"users":[]})");
}

TEST_F(AdminListTest, TakesAnEmptyPathOfARequestAsItIs) {
    MERO::APIRequest request = test::RequestWith(test::JsonOf(R"({"db_path":""})"));
    MERO::APIResponse response;
    RunAPIMethod<ListUser_v1>(&request, &response);
    EXPECT_EQ(response.GetError(), kRunFailed);
}

}  // namespace
}  // namespace serverlog::webapi
