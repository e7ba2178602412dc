#include <gtest/gtest.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/webapi/securitylog/list.h>

#include <string>

#include "support/json_value.h"
#include "support/query_call.h"
#include "support/query_fixture.h"
#include "support/store_rows.h"
#include "support/table.h"

namespace serverlog::webapi {
namespace {

using securitylog::List;
using test::ListOf;

constexpr char kPath[] = "/var/spool/@PostCube-Server/aggr_log/aggr_security_log.db";

/// The dates are near 1795305600, which is 2026-11-22 00:00:00 UTC.
class SecurityListTest : public test::QueryTest {
 protected:
    SecurityListTest() {
        test::AddJsonRows<db::SecurityLogDB>(
            kPath, {R"({"host":"a","date":1795305600,"src":"192.0.2.1","type":"dmarc",
                 "event":"Policy REJECT","sender":"eve@example.com","recipient":"ann@example.org",
                 "subject":"Ünïcode <b>"})",
                    R"({"host":"b","date":1795305601,"src":"2001:db8::1","type":"spf+dmarc",
                 "sender":"eve@müller.example","recipient":"bob@example.org"})",
                    R"({"host":"c","date":1795305599,"src":"example.net","type":"spam",
                 "event":"score 12"})"});
    }

    /// The hosts that a search finds, newest first, in both forms.
    static std::string Found(const std::string& params) {
        const std::string hosts = ListOf<List>(params, "mail_host");
        EXPECT_EQ(test::RequestListOf<List>(params, "mail_host"), hosts) << params;
        return hosts;
    }
};

TEST_F(SecurityListTest, ShowsARow) {
    EXPECT_EQ(test::TextOf(test::PayloadOf<List>(R"({"subject":"ünïcode","offset":0})")),
              test::TextOf(test::JsonOf(
                  R"({"total":1,"offset":0,"log_list":[{"date":"2026-11-22","time":"00:00:00",
                      "event":"Policy REJECT","mail_host":"a","recipient":"ann@example.org",
                      "sender":"eve@example.com","source":"192.0.2.1","subject":"Ünïcode <b>",
                      "type":"dmarc"}]})")));
}

TEST_F(SecurityListTest, Finds) {
    const test::Table<const char*, const char*> rows = {
        {"{}", "b a c"},
        {R"({"recipient":"@EXAMPLE.org"})", "b a"},
        {R"({"sender":"eve@xn--mller-kva.example"})", "b"},
        {R"({"sender":"eve","recipient":"ann"})", "a"},
        {R"({"src":"192."})", "a"},
        {R"({"source":"192."})", "b a c"},
        {R"({"type":"dmarc"})", "b a"},
        {R"({"type":"spam"})", "c"},
        {R"({"type":"virus"})", ""},
        {R"({"type":"phish"})", "b a c"},
        {R"({"type":"SPAM"})", "b a c"},
        {R"({"type":["spam"]})", "b a c"},
        {R"({"date_from":"2026/11/22"})", "b a"},
        {R"({"date_to":"2026/11/22"})", "a c"},
        {R"({"action":"list","query":"spam","src":"2001"})", "b"},
        {R"({"query":"example"})", "b a c"},
        {R"({"query":"reject"})", "a"},
        {R"({"query":"SCORE 12","type":"virus","date_from":"2099/01/01"})", "c"},
        {R"({"query":"@xn--mller-kva.example"})", "b"},
        {R"({"query":"ünïcode"})", "a"},
        {R"({"query":"dmarc"})", ""},
        {R"({"action":"find"})", "b a c"},
    };
    for (const auto& [params, hosts] : rows) {
        EXPECT_EQ(Found(params), hosts) << params;
    }
    EXPECT_TRUE(log_.TakeErrors().empty());
}

TEST_F(SecurityListTest, SortsByTheClientsFields) {
    const test::Table<const char*, const char*> rows = {
        {"source", "a b c"}, {"src", "c a b"},  {"mail_host", "a b c"}, {"host", "c a b"},
        {"time", "c a b"},   {"date", "c a b"}, {"type", "a c b"},      {"recipient", "c a b"},
        {"event", "c a b"},  {"x", "c a b"},    {"sender", "c a b"},
    };
    for (const auto& [field, hosts] : rows) {
        EXPECT_EQ(Found(R"({"sort_direction":"ASC","sort_by":")" + std::string(field) + "\"}"),
                  hosts)
            << field;
    }
    EXPECT_EQ(Found(R"({"sort_by":"subject","limit":1})"), "a");
}

}  // namespace
}  // namespace serverlog::webapi
