#include <gmock/gmock.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/db/store_traits.h>

#include <string>
#include <vector>

#include "mail_events/state_file.h"
#include "support/json_value.h"
#include "support/program.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/store_rows.h"
#include "support/table.h"

namespace {

using serverlog::db::MailLogDB;
using serverlog::db::SecurityLogDB;
using serverlog::db::StoreTraits;
using test::Program;
using testing::HasSubstr;

namespace state_file = serverlog::program::state_file;

using Texts = std::vector<std::string>;

const Program::Environment kUtc = {{"TZ", "UTC0"}};

// The subject is the name of a row. A mail from ann to the list team, which is bob and carl, has a
// second queue id and keeps its message id.
const Texts kLongTermMails = {
    R"({"date":100000,"queue_id":"A1","message_id":"m1@x","mail_from":"ann@x","mail_to":"carl@y",)"
    R"("ori_mail_to":"team@y","size":300,"subject":"leg"})",
    R"({"date":400,"queue_id":"A1","message_id":"m0@x","mail_from":"eve@x","mail_to":"dan@y",)"
    R"("subject":"used before"})",
};
const Texts kMails = {
    R"({"date":100090,"queue_id":"A2","message_id":"m1@x","mail_from":"ann@x","mail_to":"bob@y",)"
    R"("size":460,"subject":"bob"})",
    R"({"date":100000,"queue_id":"A2","message_id":"m1@x","mail_from":"ann@x","mail_to":"carl@y",)"
    R"("size":460,"status":1,"subject":"carl"})",
    R"({"date":150000,"queue_id":"B1","message_id":"<m2@x>","mail_from":"Bob@Y","mail_to":"ann@x",)"
    R"("subject":"reply"})",
    R"({"date":150001,"queue_id":"B2","mail_to":"ann@x","subject":"bounce"})",
    R"({"date":150002,"queue_id":"a1","message_id":"m9@x","subject":"small"})",
    R"({"date":150003,"queue_id":"Q%'\"_","message_id":"ü%'\"@x","mail_from":"\"g_ ü\"@x",)"
    R"("subject":"odd"})",
    R"({"date":150004,"queue_id":"QX'\"X","message_id":"üX'\"@x","mail_from":"\"gX ü\"@x",)"
    R"("subject":"wild"})",
    R"({"date":150005,"queue_id":"I1","message_id":"<i@x>","mail_to":"ida@bücher.example",)"
    R"("subject":"umlaut"})",
    R"({"date":2000000,"host":"h","queue_id":"F2","message_id":"<f@x>","mail_from":"fay@x",)"
    R"("mail_to":"gus@y","subject":"filtered"})",
    R"({"date":2000010,"host":"h","queue_id":"F3","message_id":"<n@h>","mail_to":"fay@x",)"
    R"("subject":"notification"})",
    R"({"date":2000020,"host":"g","queue_id":"F3","message_id":"<o@g>","subject":"other host"})",
    R"({"date":500,"host":"h","queue_id":"F1","message_id":"<old@x>","subject":"old use"})",
    R"({"date":600,"queue_id":"N1","message_id":"<>","subject":"came without"})",
    R"({"date":600,"queue_id":"N2","message_id":"<>","subject":"came without too"})",
};
const Texts kLongTermEvents = {
    R"({"date":96400,"type":"reject","src":"192.0.2.1","sender":"ann@x","recipient":"team@y",)"
    R"("event":"try again","subject":"greylisted"})",
    R"({"date":96399,"sender":"ann@x","recipient":"team@y","subject":"too early"})",
};
const Texts kEvents = {
    R"({"date":100000,"type":"spf","sender":"ann@x","recipient":"carl@y","subject":"verdict"})",
    R"({"date":100150,"sender":"ann@x","recipient":"bob@y","subject":"last"})",
    R"({"date":100151,"sender":"ann@x","recipient":"bob@y","subject":"too late"})",
    R"({"date":100000,"sender":"ann@x","recipient":"dan@y","subject":"other recipient"})",
    R"({"date":100000,"sender":"eve@x","recipient":"carl@y","subject":"other sender"})",
    R"({"date":150001,"recipient":"ann@x","subject":"no sender"})",
    R"({"date":1999999,"event":"F1: bad signature data","subject":"names the first id"})",
    R"({"date":1999999,"event":"F11: f1: xf@x","subject":"names others"})",
    R"({"date":2000001,"event":"message-id '<f@x>' infected","subject":"names the message id"})",
    R"({"date":300000,"event":"R1: milter-reject","recipient":"zed@y","subject":"refused"})",
    R"({"date":300001,"event":"id: <r@x>, qid: <R2>","subject":"spam"})",
};

class Trace : public testing::Test {
 protected:
    static void SetUpTestSuite() {
        test::EmptySpool();
        test::AddJsonRows<MailLogDB>(StoreTraits<MailLogDB>::kMainPath, kLongTermMails);
        test::AddJsonRows<MailLogDB>(StoreTraits<MailLogDB>::kPath, kMails);
        test::AddJsonRows<SecurityLogDB>(StoreTraits<SecurityLogDB>::kMainPath, kLongTermEvents);
        test::AddJsonRows<SecurityLogDB>(StoreTraits<SecurityLogDB>::kPath, kEvents);
        test::RunOnFile(state_file::kPath,
                        std::string(state_file::kCreateScript) +
                            "INSERT INTO joined VALUES ('h', 'F1', 'F2', 2000000);"
                            "INSERT INTO joined VALUES ('h', 'F2', 'F3', 2000005);");
    }

    static Program::Result Run(Texts arguments) {
        arguments.insert(arguments.begin(), "trace");
        return Program::Run(arguments, {}, kUtc);
    }

    /// The names of the rows, in order.
    static Texts Names(Texts arguments) {
        arguments.insert(arguments.end(), {"--format", "json"});
        const Program::Result result = Run(arguments);
        EXPECT_EQ(result.status, 0) << result.error;
        Texts names;
        for (const Json::Value& row : test::JsonOf(result.output)) {
            names.push_back(row["subject"].asString());
        }
        return names;
    }
};

TEST_F(Trace, FindsAllRowsOfAMail) {
    const Texts kMail = {"greylisted", "verdict", "leg", "carl", "bob", "last"};
    const Texts kFiltered = {"names the first id", "filtered", "names the message id",
                             "notification"};
    const test::Table<const char*, Texts, Texts> rows = {
        {"second queue id", {"A2"}, kMail},
        {"queue id of two mails",
         {"A1"},
         {"used before", "greylisted", "verdict", "leg", "carl", "bob", "last"}},
        {"one of these mails", {"A1", "--since", "1970-01-02"}, kMail},
        {"message id", {"m1@x"}, kMail},
        {"message id in brackets", {"<m1@x>"}, kMail},
        {"message id stored in brackets", {"m2@x"}, {"reply"}},
        {"part of the time",
         {"m1@x", "--since", "1970-01-02 03:46:40", "--until", "1970-01-02 03:46:40"},
         {"verdict", "leg", "carl"}},
        {"letter case of a queue id", {"a1"}, {"small"}},
        {"no message id", {"B2"}, {"bounce"}},
        {"came without a message id", {"N1"}, {"came without"}},
        {"queue id before the filter", {"F1", "--since", "1970-01-02"}, kFiltered},
        {"mail that had the queue id before", {"old@x"}, {"old use"}},
        {"queue id behind the filter", {"F2"}, kFiltered},
        {"message id of a filtered mail", {"f@x"}, kFiltered},
        {"queue id of a refused mail", {"R1"}, {"refused"}},
        {"second id of an event", {"R2"}, {"spam"}},
        {"message id of a refused mail", {"<r@x>"}, {"spam"}},
        {"wildcards and quotes in a queue id", {"Q%'\"_"}, {"odd"}},
        {"wildcards, quotes and umlauts in a message id", {"<ü%'\"@x>"}, {"odd"}},
    };
    for (const auto& [name, arguments, expected] : rows) {
        EXPECT_EQ(Names(arguments), expected) << name;
    }
}

TEST_F(Trace, FindsAllRowsWithAnAddress) {
    const test::Table<const char*, Texts, Texts> rows = {
        {"sender and recipient",
         {"ann@x", "--since", "1970-01-02 03:47:00"},
         {"bob", "last", "too late", "reply", "no sender", "bounce"}},
        {"recipient", {"carl@y"}, {"verdict", "other sender", "leg", "carl"}},
        {"original recipient", {"team@y"}, {"too early", "greylisted", "leg"}},
        {"in brackets", {"<dan@y>"}, {"used before", "other recipient"}},
        {"capitals asked for", {"DAN@Y"}, {"used before", "other recipient"}},
        {"capitals stored", {"Bob@Y"}, {"bob", "last", "too late", "reply"}},
        {"punycode", {"Ida@xn--bcher-kva.example"}, {"umlaut"}},
        {"wildcards, quotes and umlauts", {"\"g_ ü\"@x"}, {"odd"}},
    };
    for (const auto& [name, arguments, expected] : rows) {
        EXPECT_EQ(Names(arguments), expected) << name;
    }
}

TEST_F(Trace, WritesATableOrJson) {
    EXPECT_EQ(
        Run({"A2", "--until", "1970-01-02 03:46:40"}).output,
        R"(DATE                 WHAT     FROM   TO      ORIGINAL TO  QUEUE ID  HOST       SUBJECT     MESSAGE ID OR EVENT
1970-01-02 02:46:40  reject   ann@x  team@y                         192.0.2.1  greylisted  try again
1970-01-02 03:46:40  spf      ann@x  carl@y                                    verdict
1970-01-02 03:46:40  send     ann@x  carl@y  team@y       A1                   leg         m1@x
1970-01-02 03:46:40  receive  ann@x  carl@y               A2                   carl        m1@x
)");
    EXPECT_EQ(Run({"team@y", "--since", "1970-01-02 02:46:40", "--format", "json"}).output,
              R"([
{"date":96400,"event":"try again","host":"","recipient":"team@y","sender":"ann@x","src":"192.0.2.1","store":"security","subject":"greylisted","type":"reject"},
{"date":100000,"host":"","mail_from":"ann@x","mail_to":"carl@y","message_id":"m1@x","ori_mail_to":"team@y","queue_id":"A1","size":300,"status":0,"store":"mail","subject":"leg"}
]
)");
}

TEST_F(Trace, SaysWhyThereIsNothingToShow) {
    const test::Table<Texts, int, const char*> rows = {
        {{"none\x1b@x"}, 1, "the logs know nothing of none\\x1b@x; check its spelling"},
        {{"Q_'\"_"}, 1, "the logs know nothing of Q_'\"_;"},
        {{"Q%"}, 1, "the logs know nothing of Q%;"},
        {{"m1@x", "--since", "1970-01-03"}, 1, "the logs know nothing of m1@x;"},
        {{""}, 2, "is empty"},
        {{"<>"}, 2, "is empty"},
        {{}, 2, "WHAT is required"},
        {{"m1@x", "--since", "once"}, 2, "is no time"},
        {{"m1@x", "--format", "csv"}, 2, "--format"},
    };
    for (const auto& [arguments, status, error] : rows) {
        const Program::Result result = Run(arguments);
        EXPECT_EQ(result.status, status) << error;
        EXPECT_THAT(result.error, HasSubstr(error));
        EXPECT_EQ(result.output, "") << error;
    }
}

}  // namespace
