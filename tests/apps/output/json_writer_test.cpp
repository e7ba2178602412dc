#include "output/json_writer.h"

#include <gtest/gtest.h>
#include <mailserver-log/record/adminlog/admin_log.h>
#include <mailserver-log/record/emaillog/mail_log.h>
#include <mailserver-log/utils/json_string.h>

#include <sstream>

namespace serverlog::program {
namespace {

std::string Written(const std::string& text) {
    utils::TextBuffer out;
    utils::AppendJsonString(out, text);
    return std::string(out.Text());
}

TEST(JsonWriter, WritesTextsAsAValueIsWritten) {
    for (int first = 0; first < 256; ++first) {
        for (const std::string rest : {"", "a", "\xc3", "\x80", "\xa4\xbd", "\xff\xff", "\"\\\n"}) {
            const std::string text = "x" + std::string(1, static_cast<char>(first)) + rest;
            EXPECT_EQ(Written(text), CompactJson(Json::Value(text))) << first << " " << rest;
        }
    }
    for (const char* text :
         {"", "Größe 日本語 🎈", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xe6\x97"}) {
        EXPECT_EQ(Written(text), CompactJson(Json::Value(text))) << text;
    }
}

template <class Record>
void ExpectAsByValue(const Record& record) {
    std::ostringstream direct;
    std::ostringstream by_value;
    for (const auto form : {JsonWriter::Form::kLines, JsonWriter::Form::kArray}) {
        JsonWriter(direct, form).WriteRow(record::RowView(record));
        JsonWriter(by_value, form).Write(record::ToJson(record));
    }
    EXPECT_EQ(direct.str(), by_value.str());
}

TEST(JsonWriter, WritesARecordAsItsValueIsWritten) {
    record::AdminLog admin;
    ExpectAsByValue(admin);
    admin.tab_type = -7;
    admin.uid = 18'446'744'073'709'551'615U;
    admin.statement = "Domain [ä\"\\\xff] was changed.\n";
    admin.webapi_param["z"] = "\xff/";
    admin.webapi_param["a"] = 1.5;
    ExpectAsByValue(admin);
    record::MailLog mail;
    mail.size = -1;
    mail.subject = "日本";
    ExpectAsByValue(mail);
}

}  // namespace
}  // namespace serverlog::program
