#include <gtest/gtest.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/webapi/emaillog/list.h>

#include <string>
#include <vector>

#include "support/json_value.h"
#include "support/query_call.h"
#include "support/query_fixture.h"
#include "support/store_rows.h"
#include "support/table.h"
#include "support/text_file.h"

namespace serverlog::webapi {
namespace {

using emaillog::List;
using test::ListOf;

constexpr char kPath[] = "/var/spool/@PostCube-Server/aggr_log/aggr_mail_log.db";
constexpr char kDomains[] = "/var/packages/PostCube-Server/etc/domains.json";
constexpr char kStatusError[] = "status error, transform to \"any\" status";

/// The dates are near 1795305600, which is 2026-11-22 00:00:00 UTC.
class MailListTest : public test::QueryTest {
 protected:
    MailListTest() {
        test::AddJsonRows<db::MailLogDB>(
            kPath,
            {R"({"message_id":"a","date":1795302000,"size":100,"mail_from":"Ann@example.com",
                 "mail_to":"bob@other.org","subject":"Grüße aus KÖLN","host":"h3"})",
             R"({"message_id":"b","date":1795305600,"size":101,"status":1,"host":"h1",
                 "mail_from":"eve@other.org","mail_to":"ann@example.com",
                 "ori_mail_to":"sales@example.com","subject":"100% off_er"})",
             R"({"message_id":"c","date":1795309200,"size":5000,"status":1,"host":"h2",
                 "mail_from":"bob@example.com","mail_to":"ann@müller.example"})",
             R"({"message_id":"d","date":1795392000,"status":2,"mail_from":"x@sub.example.com"})",
             R"({"message_id":"e","date":1795392001,"status":3,"size":1536})",
             R"({"message_id":"f","date":1795478400,"status":4,"size":-1})"});
    }

    /// The ids that a search finds, oldest first, in both forms.
    static std::string Found(std::string params) {
        params.insert(1,
                      params == "{}" ? R"("sort_direction":"ASC")" : R"("sort_direction":"ASC",)");
        const std::string ids = ListOf<List>(params, "message_id");
        EXPECT_EQ(test::RequestListOf<List>(params, "message_id"), ids) << params;
        return ids;
    }
};

TEST_F(MailListTest, ShowsARow) {
    const std::string params = R"({"message_id":"b","status":"any","offset":0})";
    const std::string payload =
        R"({"total":1,"offset":0,"log_list":[{"mail_from":"eve@other.org",
            "mail_to":"ann@example.com","message_id":"b","ori_mail_to":"sales@example.com",
            "date":"2026-11-22","time":"00:00:00","mail_size":"0.0KB","mail_status":"receive",
            "subject":"100% off_er","mail_host":"h1"}]})";
    EXPECT_EQ(test::TextOf(test::PayloadOf<List>(params)), test::TextOf(test::JsonOf(payload)));
}

TEST_F(MailListTest, GivesItsPayloadAsText) {
    for (const char* params :
         {"{}", R"({"status":"any","offset":-1,"limit":2})", R"({"message_id":"none"})"}) {
        List method(test::JsonOf(params));
        std::string payload;
        EXPECT_EQ(std::get<0>(RunPreparedAsText(method, payload)), 0) << params;
        EXPECT_EQ(test::TextOf(test::JsonOf(payload)), test::TextOf(test::PayloadOf<List>(params)))
            << params;
    }
    List method(test::JsonOf(R"({"db_path":"/tmp/none.db"})"));
    std::string payload;
    const auto failure = RunPreparedAsText(method, payload);
    EXPECT_EQ(std::get<0>(failure), kRunFailed);
    EXPECT_TRUE(std::get<1>(failure).isMember("reason"));
    EXPECT_EQ(payload, "");
}

TEST_F(MailListTest, ShowsStatusSizeAndMissingRecipientInWords) {
    const std::string all = R"({"status":"any","sort_direction":"ASC"})";
    EXPECT_EQ(ListOf<List>(all, "mail_status"), "send receive receive bounce resend unknow");
    EXPECT_EQ(ListOf<List>(all, "ori_mail_to"), "- sales@example.com - - - -");
    EXPECT_EQ(ListOf<List>(all, "mail_size"), "0.0KB 0.0KB 4.8KB 0KB 1.5KB -0.0KB");
}

TEST_F(MailListTest, FindsByAdvanceSearch) {
    test::WriteTextFile(kDomains, R"({"domains":[{"domain_id":1,"name":"example.com"},
                                                 {"domain_id":2,"name":"mine.org"}]})");
    const test::Table<const char*, const char*> rows = {
        {R"({"status":"any"})", "a b c d e f"},
        {R"({"status":"send"})", "a"},
        {R"({"status":"receive"})", "b c"},
        {R"({"status":"bounce"})", "d"},
        {R"({"status":"resend"})", "e"},
        {R"({"status":"internal_mail"})", "c"},
        {R"({"mail_from":"ANN@"})", "a"},
        {R"({"mail_to":"ann@"})", "b c"},
        {R"({"mail_from":"example.com","mail_to":"ann@"})", "a c d"},
        {R"({"mail_to":"@xn--mller-kva.example"})", "c"},
        {R"({"ori_mail_to":"SALES"})", "b"},
        {R"({"message_id":"E"})", "e"},
        {R"({"subject":"grüsse AUS köln"})", "a"},
        {R"({"subject":"0% off_"})", "b"},
        {R"({"subject":"_%"})", ""},
        {R"({"size_from":100,"size_to":100})", ""},
        {R"({"size_from":100,"size_to":101})", "a"},
        {R"({"size_from":0})", "a b c d e"},
        {R"({"size_from":-5,"size_to":0})", "f"},
        {R"({"size_from":"5000"})", "a b c d e f"},
        {R"({"date_from":"2026/11/22"})", "b c d e f"},
        {R"({"date_to":"2026/11/23"})", "a b c d"},
        {R"({"date_from":"2026/11/22","date_to":"2026/11/22"})", "b"},
        {R"({"status":"receive","size_from":200,"mail_to":"ann"})", "c"},
        {R"({"date_from":"when","date_to":"2026/11/23"})", "a b c d"},
        {R"({"offset":"5","limit":5.5,"query":1,"action":["find"],"sort_by":null,"status":"any",
             "date_from":20991122,"date_to":false,"mail_to":{},"size_from":true})",
         "a b c d e f"},
        {R"({"offset":3000000000,"limit":-3000000000})", "a b c d e f"},
        {R"({"action":"list","query":"ann","status":"send"})", "a"},
        {R"({"action":"Find","query":"ann","status":"send"})", "a"},
        {R"({"query":"  ","status":"send"})", "a"},
    };
    for (const auto& [params, ids] : rows) {
        EXPECT_EQ(Found(params), ids) << params;
    }
}

TEST_F(MailListTest, FindsBySimpleSearch) {
    const test::Table<const char*, const char*> rows = {
        {R"({"action":"find"})", "a b c d e f"},
        {R"({"query":" ann "})", "a b c"},
        {R"({"query":"SALES"})", "b"},
        {R"({"query":"grüsse"})", "a"},
        {R"({"query":"grüße"})", "a"},
        {R"({"query":"@XN--MLLER-KVA.example"})", "c"},
        {R"({"query":"E"})", "a b c d e"},
        {R"({"query":"h1"})", ""},
        {R"({"query":"bounce"})", ""},
        {R"({"query":"ann","date_from":"2026/11/23","size_from":9999,"status":"x"})", "a b c"},
    };
    for (const auto& [params, ids] : rows) {
        EXPECT_EQ(Found(params), ids) << params;
    }
    EXPECT_TRUE(log_.TakeErrors().empty());
}

TEST_F(MailListTest, LogsAnUnknownStatusEachTime) {
    const test::Table<const char*, bool> rows = {
        {R"({"status":"any"})", false},
        {R"({"status":"internal_mail"})", false},
        {R"({"status":"ANY"})", true},
        {"{}", true},
        {R"({"status":""})", true},
        {R"({"status":4})", true},
        {R"({"query":"a","status":"?"})", false},
    };
    for (const auto& [params, is_logged] : rows) {
        log_.Take();
        EXPECT_NE(ListOf<List>(params, "message_id"), "") << params;
        std::vector<std::string> lines;
        for (const auto& line : log_.Take()) {
            lines.push_back(line.text);
        }
        EXPECT_EQ(lines,
                  is_logged
                      ? std::vector<std::string>{std::string("lib/webapi/emaillog/list:154 ") +
                                                 kStatusError}
                      : std::vector<std::string>())
            << params;
    }
}

TEST_F(MailListTest, TakesAllReceivedMailForInternalWithoutDomains) {
    EXPECT_EQ(Found(R"({"status":"internal_mail"})"), "b c") << "no file";
    test::WriteTextFile(kDomains, R"({"domains":[]})");
    EXPECT_EQ(Found(R"({"status":"internal_mail"})"), "b c") << "no domain";
    test::WriteTextFile(kDomains, "no JSON");
    EXPECT_EQ(Found(R"({"status":"internal_mail"})"), "b c") << "a broken file";
}

TEST_F(MailListTest, SortsByTheClientsFields) {
    const test::Table<const char*, const char*> rows = {
        {"date", "a b c d e f"},       {"time", "a b c d e f"},     {"mail_size", "f d a b e c"},
        {"message_id", "a b c d e f"}, {"size", "a b c d e f"},     {"no field", "a b c d e f"},
        {"status", "a b c d e f"},     {"host; --", "a b c d e f"},
    };
    for (const auto& [sort_by, ids] : rows) {
        EXPECT_EQ(Found(R"({"status":"any","sort_by":")" + std::string(sort_by) + "\"}"), ids)
            << sort_by;
    }
    const auto first = [](const char* field, const char* direction) {
        return ListOf<List>(R"({"status":"any","limit":1,"sort_by":")" + std::string(field) +
                                R"(","sort_direction":")" + direction + "\"}",
                            "message_id");
    };
    EXPECT_EQ(first("mail_host", "DESC"), "a");
    EXPECT_EQ(first("mail_status", "asc"), "f") << "anything but ASC is descending";
    EXPECT_EQ(first("subject", "DESC"), "a");
    EXPECT_EQ(first("mail_from", "DESC"), "d");
    EXPECT_EQ(first("mail_to", "DESC"), "a");
    EXPECT_EQ(first("ori_mail_to", "DESC"), "b");
}

TEST_F(MailListTest, GivesPages) {
    const test::Table<const char*, unsigned, const char*> rows = {
        {R"({"limit":2})", 0, "a b"},
        {R"({"limit":2,"offset":2})", 2, "c d"},
        {R"({"limit":4,"offset":5})", 5, "f"},
        // Behind the end stands the whole table.
        {R"({"limit":2,"offset":9})", 9, "a b c d e f"},
        {R"({"offset":-3,"limit":1})", 4294967293U, "a"},
    };
    for (const auto& [params, offset, ids] : rows) {
        EXPECT_EQ(Found(params), ids) << params;
        const Json::Value payload = test::PayloadOf<List>(params);
        EXPECT_EQ(payload["total"].asUInt(), 6U) << params;
        EXPECT_EQ(payload["offset"].asUInt(), offset) << params;
    }
    EXPECT_EQ(test::TextOf(test::PayloadOf<List>(R"({"subject":"nowhere","limit":2})")),
              R"({"log_list":[],"offset":0,"total":0})");
}

TEST_F(MailListTest, TakesHugeAndStrangeTexts) {
    const std::string fillings[] = {"@", "=?utf-8?q?", "\xff", "Ü"};
    for (const std::string& filling : fillings) {
        Json::Value params;
        std::string text;
        while (text.size() < (1U << 20)) {
            text += filling;
        }
        for (const char* key : {"mail_from", "subject", "sort_by", "sort_direction", "date_from"}) {
            params[key] = text;
        }
        EXPECT_EQ(std::get<0>(RunAPIMethod<List>(params)), 0) << filling;
        params["query"] = text;
        EXPECT_EQ(std::get<0>(RunAPIMethod<List>(params)), 0) << filling;
        params["db_path"] = text;
        EXPECT_EQ(std::get<0>(RunAPIMethod<List>(params)), kRunFailed) << filling;
    }
}

}  // namespace
}  // namespace serverlog::webapi
