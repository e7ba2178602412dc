#include "collect/record_joiner.h"

#include <gtest/gtest.h>

#include <sstream>

#include "apps/admin_line.h"
#include "support/table.h"

namespace serverlog::program {
namespace {

using test::AdminLine;
using Messages = std::vector<std::string>;

Messages Join(const std::string& log, std::size_t longest = LineReader::kLongestLine) {
    RecordJoiner joiner(longest);
    std::istringstream lines(log);
    Messages messages;
    const auto take = [&messages](const Messages& more) {
        messages.insert(messages.end(), more.begin(), more.end());
    };
    for (std::string line; std::getline(lines, line);) {
        take(joiner.Add(line));
    }
    take(joiner.Finish());
    return messages;
}

TEST(RecordJoiner, MakesMessagesOfLines) {
    const std::string a = AdminLine("a");
    const std::string cut = a.substr(0, 80);
    const std::string texts = AdminLine("x\n\n{[\\\"\n}\r\ny");
    const std::string forged = AdminLine(
        "\n{\\\"id\\\":\\\"MEROPostCube-Server\\\","
        "\\\"type\\\":\\\"admin_log\\\",\n");
    const std::string head = "Nov 22 10:00:00 nas cgi: ";
    const std::string mail =
        "Nov 22 10:00:00 nas smtpd: NOQUEUE: from=<" + a.substr(0, a.find('\n'));
    const test::Table<const char*, std::string, Messages> rows = {
        {"other lines", "x\n\ny", {"x", "", "y"}},
        {"records with line feeds in their texts",
         a + "\nx\n" + head + texts + "\n",
         {a, "x", head + texts}},
        {"no line feed at the end", a, {a}},
        {"a head within a text is escaped", forged + "\n" + a, {forged, a}},
        {"cut short before another record", cut + "\n" + head + a, {cut, head + a}},
        {"cut short within the line of another", cut + a, {cut, a}},
        {"cut short before other lines", cut + "\nx\ny\n" + a, {cut + "\nx\ny", a}},
        {"cut short before another message",
         head + cut + "\nx\n" + head + "y\n" + a,
         {head + cut + "\nx", head + "y", a}},
        {"cut short before another message, with priorities",
         "<16>" + cut + "\n<22>x\n<" + cut,
         {"<16>" + cut, "<22>x", "<" + cut}},
        {"times within a text",
         AdminLine("\n" + head + "\n<1>") + "\n" + a,
         {AdminLine("\n" + head + "\n<1>"), a}},
        {"cut short at the end", a + "\n" + cut, {a, cut}},
        {"several in one line", a + a + head + a + " x\ny", {a, a, head + a, "y"}},
        {"one that another program logged", mail + "\n" + a, {mail, a}},
        {"one of those in an open record", cut + "\n" + mail + "\n" + a, {cut, mail, a}},
        {"one of those behind a record", a + " from=<" + cut, {a, " from=<" + cut}},
    };
    for (const auto& [name, log, messages] : rows) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Join(log), messages);
    }
}

TEST(RecordJoiner, GivesUpOnARecordThatGrowsTooLong) {
    const std::string cut = AdminLine("a").substr(0, 80);
    const std::string filler(300, 'x');
    EXPECT_EQ(Join(cut + "\n" + filler + "\ny\n" + AdminLine("b"), 300),
              (Messages{cut + "\n" + filler, "y", AdminLine("b")}));
    EXPECT_EQ(Join(cut + "\ny", 79), (Messages{cut, "y"}));
}

}  // namespace
}  // namespace serverlog::program
