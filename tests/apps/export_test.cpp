#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/program.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/text_file.h"

namespace {

using test::Program;
using testing::ElementsAre;
using testing::HasSubstr;

using Texts = std::vector<std::string>;

constexpr char kFolder[] = "/tmp/export";
constexpr char kFile[] = "/tmp/export/file";

class Export : public testing::Test {
 protected:
    static void SetUpTestSuite() {
        Load("mail",
             R"({"date":100,"size":2048,"status":1,"mail_from":"ann@x.org","mail_to":"<bob>",)"
             R"("subject":"=<b>,\"x\"\r\n","host":"h"})"
             "\n"
             R"({"date":86400,"status":4,"mail_from":"@bob","message_id":"M","ori_mail_to":"o"})");
        Load("admin",
             R"({"date":1,"tab_type":20,"user":"<ann>","statement":"<del>","ip":"192.0.2.7"})");
        Load("security", R"({"date":1,"type":"spam","src":"-1","sender":"s","event":"E"})");
    }

    Export() { std::filesystem::create_directory(kFolder); }
    ~Export() override { std::filesystem::remove_all(kFolder); }

    static void Load(const std::string& store, const std::string& rows) {
        const Program::Result result = Program::Run({"load", store}, rows);
        ASSERT_EQ(result.status, 0) << result.error;
    }

    /// More rows than a pipe holds.
    static void LoadMany() {
        std::string rows;
        for (int i = 0; i < 3000; ++i) {
            rows += R"({"date":1,"user":"many","statement":"A statement of some length"})"
                    "\n";
        }
        Load("admin", rows);
    }

    static Program::Result Run(Texts arguments) {
        arguments.insert(arguments.begin(), "export");
        return Program::Run(arguments, {}, {{"TZ", "UTC0"}});
    }

    static Texts FilesLeft() {
        Texts names;
        for (const auto& entry : std::filesystem::directory_iterator(kFolder)) {
            names.push_back(entry.path().filename());
        }
        return names;
    }
};

TEST_F(Export, WritesCsvAndNdjson) {
    const struct {
        Texts arguments;
        const char* output;
    } rows[] = {
        {{"mail", "--format", "csv"},
         "date,size,status,host,mail_from,mail_to,message_id,ori_mail_to,queue_id,subject\r\n"
         "1970-01-02 00:00:00,0,4,,'@bob,,M,o,,\r\n"
         "1970-01-01 00:01:40,2048,receive,h,ann@x.org,<bob>,,,,\"'=<b>,\"\"x\"\"\r\n\"\r\n"},
        {{"security", "--format", "csv"},
         "date,event,host,recipient,sender,src,subject,type\r\n"
         "1970-01-01 00:00:01,E,,,s,'-1,,spam\r\n"},
        {{"admin", "--format", "ndjson"},
         R"({"date":1,"ip":"192.0.2.7","server":"","statement":"<del>","tab_type":20,"uid":0,)"
         R"("user":"<ann>","webapi_param":null})"
         "\n"},
        {{"mail", "--format", "ndjson", "--limit", "1", "--offset", "1", "--ascending"},
         R"({"date":86400,"host":"","mail_from":"@bob","mail_to":"","message_id":"M",)"
         R"("ori_mail_to":"o","queue_id":"","size":0,"status":4,"subject":""})"
         "\n"},
        {{"mail", "--format", "ndjson", "--from", "nobody"}, ""},
    };
    for (const auto& row : rows) {
        const Program::Result result = Run(row.arguments);
        EXPECT_EQ(result.status, 0) << result.error;
        EXPECT_EQ(result.output, row.output);
        EXPECT_THAT(result.error, testing::MatchesRegex("exported [0-2]\n"));
    }
}

TEST_F(Export, WritesTheDocumentOfTheWebApi) {
    const std::string texts = "/var/packages/PostCube-Server/target/app/texts/enu";
    test::WriteTextFile(texts,
                        "[maillog]\nadmin_log=\"The log\"\ntabtype=\"Tab\"\ndate=\"Date\"\n"
                        "time=\"Time\"\n[queue]\nqueue_name=\"Queue\"\n");
    const Program::Result result = Run({"admin", "--output", kFile});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "exported 1\n");
    const std::string document =
        "<html><head>\n"
        "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8;\">\n"
        "<title>The log</title>\n</head>\n<body>\n<center><h2> The log </h2></center>\n"
        "<table border=1 width=95%>\n"
        "<tr>\n<th>Tab</th><th></th><th></th><th>DateTime</th><th></th><th></th></tr>\n"
        "<tr>\n<td style='text-align: center'>Queue</td>\n<td>&lt;del&gt;</td>\n"
        "<td style='text-align: center'><ann></td>\n"
        "<td style='text-align: center'>1970-01-01 00:00:01</td>\n"
        "<td style='text-align: center'>192.0.2.7</td>\n<td style='text-align: center'></td>\n"
        "</tr>\n</table></body></html>\n";
    EXPECT_EQ(test::ReadTextFile(kFile), document);
    EXPECT_EQ(Run({"admin"}).output,
              "Content-Type: text/html; charset=utf-8\n"
              "Content-Disposition:attachment; filename=\"admin_log.html\"\n\n" +
                  document);
    std::filesystem::remove(texts);
    for (const char* store : {"mail", "security"}) {
        EXPECT_EQ(
            Run({store}).output,
            Program::Run({"query", std::string(store) + ".export"}, {}, {{"TZ", "UTC0"}}).output);
    }
}

TEST_F(Export, SelectsTheRowsOfADocumentAsAListDoes) {
    std::filesystem::copy(test::kSpool + "aggr_mail_log.db",
                          test::kSpool + "aggr_mail_log_main.db");
    test::RunOnFile(test::kSpool + "aggr_mail_log_main.db",
                    "UPDATE mail_log_table SET host = 'old', size = 1024");
    const struct {
        Texts arguments;
        Texts sizes;
    } rows[] = {
        {{"--sort", "size"}, {"2KB", "1KB", "1KB", "0KB"}},
        {{"--host", "OLD", "--from", "ann", "--to", "bob"}, {"1KB"}},
        {{"--file", test::kSpool + "aggr_mail_log.db"}, {"0KB", "2KB"}},
        {{"--until", "1970-01-01 00:01:40", "--status", "receive", "--ascending", "--sort", "size"},
         {"1KB", "2KB"}},
        {{"--find", "m"}, {"0KB", "1KB"}},
    };
    for (const auto& row : rows) {
        Texts arguments = row.arguments;
        arguments.insert(arguments.begin(), "mail");
        const std::string document = Run(arguments).output;
        Texts sizes;
        for (std::size_t at = 0; (at = document.find("KB<", at)) != std::string::npos; ++at) {
            const std::size_t begin = document.rfind('>', at) + 1;
            sizes.push_back(document.substr(begin, at + 2 - begin));
        }
        EXPECT_EQ(sizes, row.sizes) << row.arguments.at(0);
    }
    std::filesystem::remove(test::kSpool + "aggr_mail_log_main.db");
}

TEST_F(Export, ReplacesAFileAtTheEnd) {
    test::WriteTextFile(kFile, "former", 0640);
    std::filesystem::create_symlink("file", std::string(kFolder) + "/link");
    EXPECT_EQ(
        Run({"security", "--format", "csv", "--output", std::string(kFolder) + "/link"}).status, 0);
    EXPECT_THAT(test::ReadTextFile(kFile), HasSubstr(",spam\r\n"));
    struct stat status = {};
    ASSERT_EQ(stat(kFile, &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
    EXPECT_THAT(FilesLeft(), testing::UnorderedElementsAre("file", "link"));

    const Program::Result device = Run({"security", "--output", "/dev/null"});
    EXPECT_EQ(device.status, 1);
    EXPECT_THAT(device.error, HasSubstr("/dev/null is there and no file"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(Export, LeavesNothingBehindOnAFullDisk) {
    if (mount("none", kFolder, "tmpfs", 0, "size=64k") != 0) {
        GTEST_SKIP() << "needs the right to mount a file system";
    }
    LoadMany();
    for (const char* format : {"html", "csv", "ndjson"}) {
        SCOPED_TRACE(format);
        test::WriteTextFile(kFile, "former");
        const Program::Result result = Run({"admin", "--format", format, "--output", kFile});
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.error, HasSubstr(std::string("cannot write ") + kFile +
                                            ": No space left on device; "));
        EXPECT_EQ(test::ReadTextFile(kFile), "former");
        EXPECT_THAT(FilesLeft(), ElementsAre("file"));
    }
    umount2(kFolder, MNT_DETACH);
}

TEST_F(Export, EndsQuietlyWhenItsReaderGoes) {
    LoadMany();
    for (const char* format : {"html", "csv"}) {
        SCOPED_TRACE(format);
        Program program({"export", "admin", "--format", format});
        program.CloseOutput();
        const Program::Result result = program.Wait();
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.error, "");
        // No lock is left.
        test::RunOnFile(test::kSpool + "admin_log.db", "BEGIN EXCLUSIVE; ROLLBACK");
    }
}

TEST_F(Export, StopsOnASignal) {
    LoadMany();
    Program program({"export", "admin", "--format", "csv"});
    // It has begun, and the pipe that nobody empties holds it.
    program.WaitForOutput([](const std::string& output) { return !output.empty(); });
    program.Signal(SIGTERM);
    const Program::Result result = program.Wait();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "mailserver-log: stopped; the end is missing\n");
}

}  // namespace
