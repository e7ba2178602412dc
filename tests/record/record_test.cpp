#include <gtest/gtest.h>
#include <mailserver-log/record/adminlog/admin_log.h>
#include <mailserver-log/record/emaillog/mail_log.h>
#include <mailserver-log/record/row_view.h>
#include <mailserver-log/record/securitylog/security_log.h>
#include <merodbquery/session.h>

#include <limits>
#include <regex>
#include <sstream>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

#include "support/syslog_socket.h"
#include "utils/strings.h"

namespace serverlog::record {
namespace {

using Fields = std::vector<std::string>;

Json::Value Parse(const std::string& text) {
    Json::Value value;
    std::string errors;
    std::istringstream stream(text);
    EXPECT_TRUE(Json::parseFromStream(Json::CharReaderBuilder(), stream, &value, &errors))
        << errors;
    return value;
}

AdminLog FullAdminLog() {
    AdminLog log;
    log.tab_type = std::numeric_limits<std::int32_t>::min();
    log.uid = std::numeric_limits<std::uint64_t>::max();
    log.date = std::uint64_t{1} << 63U;
    log.statement = "Größe 日本語 🎈 'quoted' \"twice\"";
    log.user = "admin";
    log.ip = "::1";
    log.server = "mail";
    log.webapi_param = Parse(R"({"name":"Ä","list":[1,null,true],"deep":{"a":"\n"}})");
    return log;
}

MailLog FullMailLog() {
    MailLog log;
    log.date = std::numeric_limits<std::int32_t>::max();
    log.size = -1;
    log.status = 4;
    log.message_id = "<1@example.com>";
    log.queue_id = "Q";
    log.mail_from = "jürgen@example.com";
    log.mail_to = "b@example.com";
    log.host = "h";
    log.subject = "percent % _ \\ 'quote'";
    log.ori_mail_to = "c@example.com";
    return log;
}

SecurityLog FullSecurityLog() {
    SecurityLog log;
    log.date = 1;
    log.src = "a";
    log.type = "b";
    log.event = "c";
    log.host = "d";
    log.sender = "e";
    log.recipient = "f";
    log.subject = "g";
    return log;
}

template <class Record>
struct TableOf;
template <>
struct TableOf<AdminLog> {
    static constexpr char kColumns[] =
        "tab_type INTEGER, uid BIGINT, date BIGINT, statement TEXT, user TEXT, ip TEXT, server "
        "TEXT,"
        " webapi_param TEXT";
    static AdminLog Full() { return FullAdminLog(); }
};
template <>
struct TableOf<MailLog> {
    static constexpr char kColumns[] =
        "date INTEGER, size INTEGER, status INTEGER, host TEXT, mail_from TEXT, mail_to TEXT,"
        " message_id TEXT, ori_mail_to TEXT, queue_id TEXT, subject TEXT";
    static MailLog Full() { return FullMailLog(); }
};
template <>
struct TableOf<SecurityLog> {
    static constexpr char kColumns[] =
        "date INTEGER, event TEXT, host TEXT, recipient TEXT, sender TEXT, src TEXT, subject TEXT,"
        " type TEXT";
    static SecurityLog Full() { return FullSecurityLog(); }
};

template <class Record>
Record Owned(const RowView<Record>& row) {
    Record record;
    ForEachIndexedColumn<Record>([&](auto index, const auto& column) {
        record.*column.member = row.template Get<decltype(index)::value>();
    });
    return record;
}

template <class Record>
class EveryRecord : public testing::Test {
 protected:
    EveryRecord() {
        session_.RawQuery(std::string("CREATE TABLE t (") + TableOf<Record>::kColumns + ")");
    }

    void Insert(const Record& record) {
        const std::string names = utils::Join(record.GetInsertFields(), ", ");
        const std::string values = utils::Join(record.GetInsertFields(), ", :");
        session_.GetRawSession() << "INSERT INTO t (" + names + ") VALUES (:" + values + ")",
            soci::use(record);
    }

    Record Select() {
        Record record;
        session_.GetRawSession() << "SELECT * FROM t", soci::into(record);
        return record;
    }

    /// The statement that the first row was fetched by; what it was fetched into lives with it.
    template <class Row>
    soci::statement Selected(Row& row) {
        soci::statement select(session_.GetRawSession());
        select.exchange(soci::into(row));
        select.alloc();
        select.prepare("SELECT * FROM t");
        select.define_and_bind();
        select.execute(true);
        return select;
    }

    merodbquery::Session session_ = merodbquery::Session::SQLite(":memory:");
};
using Records = testing::Types<AdminLog, MailLog, SecurityLog>;
TYPED_TEST_SUITE(EveryRecord, Records, );

TYPED_TEST(EveryRecord, ComesBackFromATableAndFromJson) {
    for (const TypeParam& record : {TypeParam(), TableOf<TypeParam>::Full()}) {
        this->session_.RawQuery("DELETE FROM t");
        this->Insert(record);
        EXPECT_TRUE(this->Select() == record);
        EXPECT_TRUE(Owned(RowView<TypeParam>(record)) == record);
        EXPECT_TRUE(FromJson<TypeParam>(ToJson(record)) == record);
    }
    EXPECT_FALSE(TypeParam() == TableOf<TypeParam>::Full());
}

TYPED_TEST(EveryRecord, DiffersInEachColumn) {
    const Json::Value full = ToJson(TableOf<TypeParam>::Full());
    for (const std::string& name : full.getMemberNames()) {
        Json::Value one(Json::objectValue);
        one[name] = full[name];
        EXPECT_FALSE(FromJson<TypeParam>(one) == TypeParam()) << name;
    }
}

TYPED_TEST(EveryRecord, TakesANullWhereItMay) {
    const bool is_admin = std::is_same_v<TypeParam, AdminLog>;
    for (const std::string& name : TypeParam().GetInsertFields()) {
        this->session_.RawQuery("DELETE FROM t");
        this->Insert(TypeParam());
        this->session_.RawQuery("UPDATE t SET " + name + " = NULL");
        const bool is_text = ToJson(TypeParam())[name].isString();
        if (is_text && !is_admin) {
            EXPECT_TRUE(this->Select() == TypeParam()) << name;
            continue;
        }
        try {
            this->Select();
            ADD_FAILURE() << name << " took a NULL";
        } catch (const soci::soci_error& error) {
            EXPECT_NE(std::string(error.what()).find("Null value not allowed for this type"),
                      std::string::npos)
                << name << ": " << error.what();
        }
    }
}

TYPED_TEST(EveryRecord, RefusesAColumnOfAnotherType) {
    this->session_.RawQuery("DROP TABLE t");
    const std::string columns = std::regex_replace(std::string(TableOf<TypeParam>::kColumns),
                                                   std::regex("date [A-Z]+"), "date REAL");
    this->session_.RawQuery("CREATE TABLE t (" + columns + ")");
    this->Insert(TypeParam());
    EXPECT_THROW(this->Select(), std::bad_cast);
}

/// What reading the one row of a table ends with: the record as JSON, or what was thrown.
template <class Read>
std::string EndOf(Read read) {
    try {
        return ToJson(read()).toStyledString();
    } catch (const soci::soci_error& error) {
        const std::string text = error.what();
        return text.substr(0, std::min(text.find(" while"), text.find(" for the parameter")));
    } catch (const std::bad_cast&) {
        return "bad_cast";
    }
}

// A record and its view are read on the statement itself; the record's virtual operations have to
// do the same.
TYPED_TEST(EveryRecord, ExchangesAsItsVirtualOperationsDo) {
    using Names = std::vector<std::string>;
    const Names types = {"INTEGER", "BIGINT", "TEXT", "VARCHAR(9)", "REAL", "", "BLOB"};
    for (const std::string& name : TypeParam().GetInsertFields()) {
        for (const std::string& type : types) {
            for (const char* value : {"NULL", "0", "7", "''", "'7 of {}'", "x'4142'", "1.5"}) {
                this->session_.RawQuery("DROP TABLE t");
                this->session_.RawQuery(
                    "CREATE TABLE t (" +
                    std::regex_replace(std::string(TableOf<TypeParam>::kColumns),
                                       std::regex("\\b" + name + " [A-Z]+"), name + " " + type) +
                    ")");
                this->Insert(TableOf<TypeParam>::Full());
                this->session_.RawQuery("UPDATE t SET " + name + " = " + value);
                const auto direct = [this] { return this->Select(); };
                const auto by_view = [this] {
                    RowView<TypeParam> view;
                    const soci::statement select = this->Selected(view);
                    return Owned(view);
                };
                const auto by_values = [this] {
                    soci::values values;
                    const soci::statement select = this->Selected(values);
                    TypeParam record;
                    record.soci_FromBase(values);
                    return record;
                };
                EXPECT_EQ(EndOf(direct), EndOf(by_values)) << name << " " << type << " " << value;
                EXPECT_EQ(EndOf(by_view), EndOf(by_values)) << name << " " << type << " " << value;
            }
        }
        this->session_.RawQuery("ALTER TABLE t RENAME COLUMN " + name + " TO other");
        EXPECT_EQ(EndOf([this] { return this->Select(); }), "Column '" + name + "' not found");
    }
}

TYPED_TEST(EveryRecord, BindsAloneInItsStatement) {
    int other = 1;
    const std::string names = utils::Join(TypeParam().GetInsertFields(), ", ");
    const std::string values = utils::Join(TypeParam().GetInsertFields(), ", :");
    const TypeParam record;
    EXPECT_THROW((this->session_.GetRawSession()
                      << "INSERT INTO t (" + names + ") SELECT :" + values + " WHERE :other = 1",
                  soci::use(record), soci::use(other, "other")),
                 soci::soci_error);
    this->Insert(record);
    EXPECT_TRUE(this->Select() == record);
}

TEST(Record, NamesItsColumnsInInsertOrder) {
    EXPECT_EQ(AdminLog().GetInsertFields(), (Fields{"tab_type", "statement", "user", "uid", "date",
                                                    "ip", "server", "webapi_param"}));
    EXPECT_EQ(MailLog().GetInsertFields(),
              (Fields{"date", "size", "status", "host", "mail_from", "mail_to", "message_id",
                      "ori_mail_to", "queue_id", "subject"}));
    EXPECT_EQ(SecurityLog().GetInsertFields(),
              (Fields{"date", "event", "host", "recipient", "sender", "src", "subject", "type"}));
}

TEST(Record, KeepsWhatTheParserLeftOfABadParameterText) {
    test::SyslogSocket log;
    auto session = merodbquery::Session::SQLite(":memory:");
    session.RawQuery(std::string("CREATE TABLE t (") + TableOf<AdminLog>::kColumns + ")");
    session.RawQuery("INSERT INTO t VALUES (1, 2, 3, 's', 'u', 'i', 'v', '{\"a\": 100%')");
    AdminLog record;
    record.webapi_param = "from the row before";
    session.GetRawSession() << "SELECT * FROM t", soci::into(record);
    EXPECT_EQ(log.TakeErrors(), (Fields{"json parse webapi param fail: {\"a\": 100%"}));
    EXPECT_EQ(record.server, "v");
    EXPECT_NE(record.webapi_param, Json::Value("from the row before"));
}

TEST(Record, TurnsIntoCells) {
    EXPECT_EQ(ToCells(FullAdminLog()),
              (Fields{"-2147483648", "Größe 日本語 🎈 'quoted' \"twice\"", "admin",
                      "18446744073709551615", "9223372036854775808", "::1", "mail",
                      R"({"deep":{"a":"\n"},"list":[1,null,true],"name":"\u00c4"})"}));
}

TEST(Record, SaysWhatIsWrongWithItsJson) {
    const struct {
        const char* json;
        const char* sentence;
    } rows[] = {
        {"[]", "a record must be a JSON object"},
        {"null", "a record must be a JSON object"},
        {R"({"uid":-1})", "column \"uid\" must be a whole number of 64 bits without a sign"},
        {R"({"uid":"1"})", "column \"uid\" must be a whole number of 64 bits without a sign"},
        {R"({"date":1.5})", "column \"date\" must be a whole number of 64 bits without a sign"},
        {R"({"tab_type":2147483648})", "column \"tab_type\" must be a whole number of 32 bits"},
        {R"({"tab_type":null})", "column \"tab_type\" must be a whole number of 32 bits"},
        {R"({"user":7})", "column \"user\" must be a text"},
        {R"({"usr":"a"})", "there is no column \"usr\""},
    };
    for (const auto& row : rows) {
        try {
            FromJson<AdminLog>(Parse(row.json));
            ADD_FAILURE() << row.json << " was taken";
        } catch (const ColumnError& error) {
            EXPECT_STREQ(error.what(), row.sentence) << row.json;
        }
    }
}

}  // namespace
}  // namespace serverlog::record
