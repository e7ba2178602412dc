#include <fcntl.h>
#include <gtest/gtest.h>
#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/webapi/adminlog/export_v1.h>
#include <mailserver-log/webapi/emaillog/export.h>
#include <mailserver-log/webapi/securitylog/export.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/json_value.h"
#include "support/query_call.h"
#include "support/query_fixture.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/standard_output.h"
#include "support/store_rows.h"
#include "support/text_file.h"

namespace serverlog::webapi {
namespace {

namespace fs = std::filesystem;
using test::kSpool;
using test::StandardOutputOf;

constexpr char kTexts[] = "/var/packages/PostCube-Server/target/app/texts/";
constexpr char kSystemTexts[] = "/usr/mero/meroman/webman/texts/";
constexpr int kMidnight = 1795305600;  // 2026-11-22 00:00:00 UTC

/// What a method writes in the JSON form.
template <class Method>
std::string DocumentOf(const std::string& params) {
    std::tuple<int, Json::Value> result;
    std::string document =
        StandardOutputOf([&] { result = RunAPIMethod<Method>(test::JsonOf(params)); });
    EXPECT_EQ(std::get<0>(result), 0) << test::TextOf(std::get<1>(result));
    EXPECT_EQ(test::TextOf(std::get<1>(result)), "{}");
    return document;
}

/// What it writes in the request form.
template <class Method>
std::string RequestDocumentOf(const std::string& params) {
    MERO::APIRequest request = test::RequestWith(test::JsonOf(params));
    MERO::APIResponse response;
    std::string document = StandardOutputOf([&] { RunAPIMethod<Method>(&request, &response); });
    EXPECT_FALSE(response.IsOutputEnabled());
    EXPECT_EQ(response.GetError(), 0);
    EXPECT_TRUE(response.GetBody().isNull()) << "nothing but the document";
    return document;
}

class ExportTest : public test::QueryTest {
 protected:
    ExportTest() {
        fs::remove_all(std::string(kTexts) + "xx");
        fs::remove_all(std::string(kSystemTexts) + "xx");
    }

    static void WriteTexts(const std::string& language, const std::string& mark) {
        test::WriteTextFile(
            kTexts + language,
            "[maillog]\ntabtype=\"Tab\"\nevent_desc=\"Event\"\ndate=\"Date\"\ntime=\"Time\"\n"
            "user_ip=\"IP\"\nzs_host_name=\"Server\"\nadmin_log=\"Admin log" +
                mark + "\"\nmail_log=\"Mail log" + mark + "\"\nsecurity_log=\"Security log" + mark +
                "\"\nmessage_id=\"Id\"\nmail_from=\"From\"\nmail_to=\"To\"\n"
                "ori_recipient=\"Original\"\nmail_size=\"Size\"\nmail_status=\"Status\"\n"
                "source=\"Source\"\n[common]\nuser=\"User\"\nserver_name=\"Host\"\n"
                "[mcp]\nmcp_rule_target_title=\"Subject\"\n[spam]\nspam_filter=\"Spam & Co\"\n"
                "[log]\nlog_type=\"wrong file\"\n");
        test::WriteTextFile(kSystemTexts + language,
                            "[log]\nlog_type=\"Type\"\nlog_action=\"Action\"\n");
    }
};

void AddAdminRows() {
    record::AdminLog first;
    first.tab_type = 7;
    first.statement = "<b>\"1\" & 'ü'";
    first.user = "<ann>";
    first.ip = "192.0.2.1";
    first.server = "(h&1)";
    first.date = kMidnight;
    record::AdminLog second;
    second.tab_type = 99;
    second.user = "50%s";
    second.date = kMidnight - 1;
    test::AddRows<db::AdminLogDB>(kSpool + "admin_log.db", {first, second});
}

std::string AdminDocument(const std::string& title, const std::string& labels,
                          const std::string& tab) {
    return "Content-Type: text/html; charset=utf-8\n"
           "Content-Disposition:attachment; filename=\"admin_log.html\"\n\n"
           "<html><head>\n"
           "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8;\">\n"
           "<title>" +
           title +
           "</title>\n</head>\n<body>\n"
           "<center><h2> " +
           title +
           " </h2></center>\n"
           "<table border=1 width=95%>\n"
           "<tr>\n" +
           labels +
           "</tr>\n"
           "<tr>\n"
           "<td style='text-align: center'>" +
           tab +
           "</td>\n"
           "<td>&lt;b&gt;&quot;1&quot; &amp; &#39;ü&#39;</td>\n"
           "<td style='text-align: center'><ann></td>\n"
           "<td style='text-align: center'>2026-11-22 00:00:00</td>\n"
           "<td style='text-align: center'>192.0.2.1</td>\n"
           "<td style='text-align: center'>(h&1)</td>\n"
           "</tr>\n"
           "<tr>\n"
           "<td style='text-align: center'></td>\n"
           "<td></td>\n"
           "<td style='text-align: center'>50%s</td>\n"
           "<td style='text-align: center'>2026-11-21 23:59:59</td>\n"
           "<td style='text-align: center'></td>\n"
           "<td style='text-align: center'></td>\n"
           "</tr>\n"
           "</table></body></html>\n";
}

const char kAdminLabels[] =
    "<th>Tab</th><th>Event</th><th>User</th><th>DateTime</th><th>IP</th><th>Server</th>";
const char kNoLabels[] = "<th></th><th></th><th></th><th></th><th></th><th></th>";

TEST_F(ExportTest, WritesTheAdminLog) {
    AddAdminRows();
    WriteTexts("enu", "");
    WriteTexts("xx", " XX");
    EXPECT_EQ(RequestDocumentOf<adminlog::Export_v1>(R"({"lang":"xx","limit":1,"offset":1})"),
              AdminDocument("Admin log", kAdminLabels, "Spam & Co"));
    EXPECT_EQ(DocumentOf<adminlog::Export_v1>("{}"), AdminDocument("", kNoLabels, ""))
        << "the JSON form has no texts of its own";

    adminlog::Export_v1 method(Json::objectValue);
    method.SetTestString(test::JsonOf(R"({"7":"Seven"})"),
                         test::JsonOf(R"({"maillog":{"admin_log":"Test"}})"));
    EXPECT_EQ(StandardOutputOf([&] { method.RunByJson(); }),
              AdminDocument("Test", kNoLabels, "Seven"));
}

void AddMailRows() {
    record::MailLog first;
    first.message_id = "<id@x>";
    first.date = kMidnight;
    first.mail_from = "\"A\" <a@x>";
    first.mail_to = "b@x";
    first.subject = "<1> & 2";
    first.size = 1536;
    first.host = "h1";
    first.status = 3;
    record::MailLog second;
    second.date = kMidnight - 1;
    second.ori_mail_to = "c@x";
    second.status = 4;
    test::AddRows<db::MailLogDB>(kSpool + "aggr_mail_log.db", {first});
    test::AddRows<db::MailLogDB>(kSpool + "aggr_mail_log_main.db", {second});
}

const char kMailHead[] =
    "Content-Type:application/octet-stream\n"
    "Content-Disposition:attachment; filename=\"meromaillog.html\"\n\n"
    "<html><head>\n"
    "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8;\">\n"
    "<title>Mail log</title>\n</head>\n<body>\n"
    "<center><h2> Mail log </h2></center>\n"
    "<table border=1 width=95%>\n"
    "<tr>\n"
    "<th>Id</th><th>Date</th><th>Time</th><th>From</th><th>To</th><th>Original</th>"
    "<th>Subject</th><th>Size</th><th>Host</th><th>Status</th></tr>\n";
const char kFirstMail[] =
    "<tr>\n"
    "<td align=\"center\"><id@x></td>\n"
    "<td align=\"center\">2026-11-22</td>\n"
    "<td align=\"center\">00:00:00</td>\n"
    "<td align=\"center\">\"A\" <a@x></td>"
    "<td align=\"center\">b@x</td>"
    "<td align=\"center\">-</td>"
    "<td align=\"center\">&lt;1&gt; &amp; 2</td>\n"
    "<td align=\"center\">1.5KB</td>"
    "<td align=\"center\">h1</td>"
    "<td align=\"center\">resend</td>"
    "</tr>\n";
const char kSecondMail[] =
    "<tr>\n"
    "<td align=\"center\"></td>\n"
    "<td align=\"center\">2026-11-21</td>\n"
    "<td align=\"center\">23:59:59</td>\n"
    "<td align=\"center\"></td>"
    "<td align=\"center\"></td>"
    "<td align=\"center\">c@x</td>"
    "<td align=\"center\"></td>\n"
    "<td align=\"center\">0KB</td>"
    "<td align=\"center\"></td>"
    "<td align=\"center\">unknow</td>"
    "</tr>\n";
const std::string kEnd = "</table></body></html>\n";

TEST_F(ExportTest, WritesTheMailLog) {
    AddMailRows();
    WriteTexts("enu", "");
    const struct {
        const char* params;
        std::string rows;
    } rows[] = {
        {R"({"status":"any","lang":"xx"})", std::string(kFirstMail) + kSecondMail},
        {R"({"status":"any","limit":1,"offset":5,"sort_by":"time","sort_direction":"ASC"})",
         std::string(kSecondMail) + kFirstMail},
        {R"({"status":"resend"})", kFirstMail},
        {R"({"query":"b@x"})", kFirstMail},
        {R"({"subject":"nowhere"})", ""},
        {R"({"status":"any","db_path":"/var/spool/@PostCube-Server/aggr_log/)"
         R"(aggr_mail_log_main.db"})",
         kSecondMail},
    };
    for (const auto& row : rows) {
        const std::string document = kMailHead + row.rows + kEnd;
        EXPECT_EQ(DocumentOf<emaillog::Export>(row.params), document) << row.params;
        EXPECT_EQ(RequestDocumentOf<emaillog::Export>(row.params), document) << row.params;
    }
}

TEST_F(ExportTest, EscapesEachCharacterOfMarkup) {
    WriteTexts("enu", "");
    const struct {
        char character;
        const char* escaped;
    } rows[] = {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&#39;"}};
    record::MailLog record;
    for (const auto& row : rows) {
        record.subject = std::string("a text ") + row.character + " of more than sixteen bytes";
        test::AddRows<db::MailLogDB>(kSpool + "aggr_mail_log.db", {record});
        EXPECT_NE(DocumentOf<emaillog::Export>("{}").find(std::string(">a text ") + row.escaped +
                                                          " of more than sixteen bytes</td>"),
                  std::string::npos)
            << row.character;
    }
}

/// The document of a method that writes what a query fetches into a record.
template <class Method, class DB>
std::string DocumentByRecord(const std::string& store_name) {
    auto store = db::Provider(kSpool + store_name).Get<DB>(true);
    Method method(Json::objectValue);
    typename db::StoreTraits<DB>::Record record;
    db::UnionAllSelectQuery query = method.DbStepList(store, record);
    return StandardOutputOf([&] { method.ExportLog(query, record); });
}

TEST_F(ExportTest, WritesMailsThatAreFetchedIntoARecord) {
    AddMailRows();
    WriteTexts("enu", "");
    EXPECT_EQ((DocumentByRecord<emaillog::Export, db::MailLogDB>("aggr_mail_log.db")),
              kMailHead + std::string(kFirstMail) + kEnd);
}

std::string SecurityDocument(const std::string& title, const std::string& labels) {
    return "Content-Type:application/octet-stream\n"
           "Content-Disposition:attachment; filename=\"merosecuritylog.html\"\n\n"
           "<html><head>\n"
           "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8;\">\n"
           "<title>" +
           title +
           "</title>\n</head>\n<body>\n"
           "<center><h2> " +
           title +
           " </h2></center>\n"
           "<table border=1 width=95%>\n"
           "<tr>\n" +
           labels +
           "</tr>\n"
           "<tr>\n"
           "<td align=\"center\">2026-11-22</td>\n"
           "<td align=\"center\">00:00:00</td>\n"
           "<td align=\"center\">192.0.2.1</td>"
           "<td align=\"center\"><a@x></td>"
           "<td align=\"center\">b@x</td>"
           "<td align=\"center\">&lt;1&gt;</td>"
           "<td align=\"center\">spam</td>"
           "<td align=\"center\">h1</td>"
           "<td align=\"center\">a & b</td>"
           "</tr>\n"
           "</table></body></html>\n";
}

TEST_F(ExportTest, WritesTheSecurityLogInTheLanguageOfTheRequest) {
    record::SecurityLog row;
    row.date = kMidnight;
    row.src = "192.0.2.1";
    row.sender = "<a@x>";
    row.recipient = "b@x";
    row.subject = "<1>";
    row.type = "spam";
    row.host = "h1";
    row.event = "a & b";
    test::AddRows<db::SecurityLogDB>(kSpool + "aggr_security_log.db", {row});
    WriteTexts("enu", "");
    WriteTexts("xx", " XX");
    const std::string labels =
        "<th>Date</th><th>Time</th><th>Source</th><th>From</th><th>To</th><th>Subject</th>"
        "<th>Type</th><th>Host</th><th>Action</th>";
    EXPECT_EQ(DocumentOf<securitylog::Export>("{}"), SecurityDocument("Security log", labels));
    EXPECT_EQ((DocumentByRecord<securitylog::Export, db::SecurityLogDB>("aggr_security_log.db")),
              SecurityDocument("Security log", labels));
    EXPECT_EQ(RequestDocumentOf<securitylog::Export>(R"({"lang":"xx"})"),
              SecurityDocument("Security log XX", labels));
    EXPECT_EQ(DocumentOf<securitylog::Export>(R"({"lang":"none"})"),
              SecurityDocument("",
                               "<th></th><th></th><th></th><th></th><th></th><th></th>"
                               "<th></th><th></th><th></th>"));
}

TEST_F(ExportTest, FindsAllItsWordsInTheShippedTexts) {
    fs::create_directory_symlink(PROJECT_SOURCE_DIRECTORY "/texts/enu",
                                 std::string(kTexts) + "enu");
    fs::create_directory_symlink(PROJECT_SOURCE_DIRECTORY "/texts/platform/enu",
                                 std::string(kSystemTexts) + "enu");
    for (const std::string& document :
         {RequestDocumentOf<adminlog::Export_v1>("{}"), RequestDocumentOf<emaillog::Export>("{}"),
          RequestDocumentOf<securitylog::Export>("{}")}) {
        EXPECT_EQ(document.find("<th></th>"), std::string::npos) << document;
        EXPECT_EQ(document.find("<title></title>"), std::string::npos) << document;
        EXPECT_NE(document.find(kEnd), std::string::npos) << document;
    }
}

TEST_F(ExportTest, KeepsWhatIsWrittenWhenTheQueryFails) {
    AddMailRows();
    WriteTexts("enu", "");
    test::RunOnFile(kSpool + "aggr_mail_log_main.db", "DROP TABLE mail_log_table");
    MERO::APIRequest request = test::RequestWith(Json::objectValue);
    MERO::APIResponse response;
    EXPECT_EQ(StandardOutputOf([&] { RunAPIMethod<emaillog::Export>(&request, &response); }),
              kMailHead);
    EXPECT_EQ(response.GetError(), kRunFailed);
}

/// Code and reason of exports that cannot be written, and whether the stores can be used behind
/// them.
std::string RunWithOutput(int descriptor) {
    std::string result;
    test::WithStandardOutput(descriptor, [&] {
        for (const auto& [code, data] : {RunAPIMethod<adminlog::Export_v1>(Json::objectValue),
                                         RunAPIMethod<emaillog::Export>(Json::objectValue)}) {
            result += std::to_string(code) + " " + data["reason"].asString() + "; ";
        }
    });
    for (const char* file : {"admin_log.db", "aggr_mail_log.db", "aggr_mail_log_main.db"}) {
        test::RunOnFile(kSpool + file, "BEGIN EXCLUSIVE; COMMIT");
    }
    result += test::PayloadOf<emaillog::List>(R"({"status":"any"})")["total"].asString();
    return result;
}

TEST_F(ExportTest, EndsWhenStandardOutputTakesNoMore) {
    AddAdminRows();
    AddMailRows();
    const std::string result = "117 Unknown Failure!; 117 Unknown Failure!; 2";
    EXPECT_EQ(test::InChild([] { return RunWithOutput(open("/dev/full", O_WRONLY)); }), result);
    EXPECT_EQ(test::InChild([] {
                  int ends[2];
                  if (pipe(ends) != 0) {
                      return std::string("no pipe");
                  }
                  close(ends[0]);
                  signal(SIGPIPE, SIG_IGN);
                  return RunWithOutput(ends[1]);
              }),
              result)
        << "a client that goes away";
}

TEST_F(ExportTest, WritesAsMuchOfARowAsThereIsRoomFor) {
    AddMailRows();
    WriteTexts("enu", "");
    const std::string rows = kMailHead + std::string(kFirstMail) + kSecondMail;
    for (const std::size_t missing : {1U, 40U}) {
        const std::size_t room = rows.size() - missing;
        EXPECT_EQ(
            test::InChild([room] {
                signal(SIGXFSZ, SIG_IGN);
                const rlimit limit = {room, room};
                setrlimit(RLIMIT_FSIZE, &limit);
                return StandardOutputOf([] { RunAPIMethod<emaillog::Export>(Json::objectValue); });
            }),
            rows.substr(0, room));
    }
}

}  // namespace
}  // namespace serverlog::webapi
