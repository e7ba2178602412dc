#include <gmock/gmock.h>
#include <merodbquery/condition.h>
#include <merodbquery/select_query.h>

#include <string>
#include <vector>

#include "support/table.h"

namespace {

using merodbquery::Condition;
using merodbquery::SelectQuery;
using merodbquery::Session;
using testing::ElementsAre;

template <class T>
Condition Compare(const char* column, const char* op, const T& value) {
    return Condition::ConditionFactory<T>(column, op, value);
}

class ConditionTest : public testing::Test {
 protected:
    ConditionTest() {
        session_.RawQuery("CREATE TABLE t(id INTEGER PRIMARY KEY, a TEXT, n INTEGER)");
    }

    void Insert(const std::string& text, int number = 0) {
        session_.GetRawSession() << "INSERT INTO t(a, n) VALUES(?, ?)", soci::use(text),
            soci::use(number);
    }

    std::vector<std::string> Matching(const Condition& condition) {
        SelectQuery query(session_, "t");
        std::string text;
        query.SetColumns({"a"});
        query.Bind(soci::into(text));
        query.Where(condition);
        query.OrderBy("id", SelectQuery::ASC);
        query.ExecuteWithoutPreFetch();
        std::vector<std::string> texts;
        while (query.Fetch()) {
            texts.push_back(text);
        }
        return texts;
    }

    Session session_ = Session::SQLite(":memory:");
};

TEST_F(ConditionTest, HasSubstringDisregardsCaseAndTakesAllElseLiterally) {
    const test::Table<const char*, std::string, std::string, bool> cases = {
        {"ASCII, wanted in upper case", "Set a Domain", "DOMAIN", true},
        {"at the end", "domain", "ain", true},
        {"longer than the text", "main", "domain", false},
        {"neighbours of the letters", "@[`{", "`{@[", false},
        {"same bits but the case bit", "[", "{", false},
        {"umlauts", "Größe über ÄRGER", "GRÖSSE ÜBER ärger", true},
        {"umlaut is not its base letter", "Größe", "grosse", false},
        {"sharp s wanted as SS", "straße", "STRASSE", true},
        {"SS wanted as sharp s", "STRASSE", "straße", true},
        {"capital sharp s", "STRAẞE", "strasse", true},
        {"final sigma", "Ὀδυσσεύς", "ὈΔΥΣΣΕΎΣ", true},
        {"outside the first plane", "\U00010428", "\U00010400", true},
        {"Kelvin sign in a text searched by ASCII", "300 \u212A", "300 k", true},
        {"ligature", "o\uFB03ce", "OFFICE", true},
        {"Turkish dotless i wanted in upper case", "kapı", "KAPI", true},
        {"Turkish dotted I wanted in lower case", "İstanbul", "istanbul", true},
        {"Turkish dotted I in lower case of its own", "i\u0307stanbul", "İSTANBUL", true},
        {"no i, but a dot", "j\u0307", "j", true},
        {"Japanese", "設定を変更", "を変", true},
        {"percent sign", "100% sure", "0% S", true},
        {"percent sign is no wildcard", "100 sure", "1%e", false},
        {"underscore is no wildcard", "abc", "a_c", false},
        {"underscore", "a_c", "A_C", true},
        {"backslash", "C:\\Mail\\%", "\\mail\\%", true},
        {"backslash escapes nothing", "100%", "\\%", false},
        {"single quote", "it's", "IT'S", true},
        {"empty in a text", "text", "", true},
        {"text in an empty text", "", "a", false},
        {"not UTF-8, stored", "caf\xe9 noir", "NOIR", true},
        {"not UTF-8, wanted", "caf\xe9", "F\xe9", true},
        {"not UTF-8, wanted only", "cafe", "f\xe9", false},
        {"cut within a letter", "\xf0\x9f", "\xf0\x9f", true},
        {"over-long and surrogate", "\xc0\xaf\xed\xa0\x80 x", "X", true},
        {"a NUL within", std::string("a\0B", 3), "b", true},
        {"long text that grows when folded", std::string(2000, 'x') + "\u0390", "\u0390", true},
    };
    for (const auto& [name, stored, wanted, matches] : cases) {
        SCOPED_TRACE(name);
        session_.RawQuery("DELETE FROM t");
        Insert(stored);
        EXPECT_EQ(matches, !Matching(Condition::HasSubstring("a", wanted)).empty());
    }
}

TEST_F(ConditionTest, HasSubstringOverManyRowsAndKinds) {
    session_.RawQuery("INSERT INTO t(a) VALUES(NULL), (x'4142'), (12.5), ('xab'), ('XÄB'), ('')");
    EXPECT_THAT(Matching(Condition::HasSubstring("a", "ab")), ElementsAre("AB", "xab"));
    EXPECT_THAT(Matching(Condition::HasSubstring("a", "2.5")), ElementsAre("12.5"));
    EXPECT_THAT(Matching(Condition::HasSubstring("a", "")),
                ElementsAre("AB", "12.5", "xab", "XÄB", ""))
        << "NULL holds not even the empty text";
    EXPECT_THAT(Matching(Condition::HasSubstring("a", "xä") || Condition::HasSubstring("a", "XA")),
                ElementsAre("xab", "XÄB"));
}

TEST_F(ConditionTest, ComparesAndJoins) {
    for (const int number : {1, 2, 3, 10}) {
        Insert("row " + std::to_string(number), number);
    }
    const auto n = [](const char* op, int value) { return Compare("n", op, value); };
    const test::Table<const char*, Condition, std::vector<std::string>> cases = {
        {"nothing set",
         Condition::Null() && Condition::Null(),
         {"row 1", "row 2", "row 3", "row 10"}},
        {"text against a number column", Compare<std::string>("n", ">=", "3"), {"row 3", "row 10"}},
        {"Equal, as a number", Condition::Equal("n", "3"), {"row 3"}},
        {"integer", n("<", 3), {"row 1", "row 2"}},
        {"floating point", Compare("n", "<", 2.5), {"row 1", "row 2"}},
        {"not equal", n("!=", 3) && n("<>", 10), {"row 1", "row 2"}},
        {"LIKE knows wildcards", Compare<std::string>("a", "LIKE", "ROW 1%"), {"row 1", "row 10"}},
        {"NOT LIKE", Compare<std::string>("a", "NOT LIKE", "%1%"), {"row 2", "row 3"}},
        {"a qualified name", Compare("main.t.n", "=", 2), {"row 2"}},
        {"and binds no tighter than or", (n("=", 1) || n("=", 2)) && n(">", 1), {"row 2"}},
        {"nested the other way", n("=", 1) || (n(">", 1) && n("<", 3)), {"row 1", "row 2"}},
        {"an empty side", Condition::Null() || (n("=", 2) && Condition::Null()), {"row 2"}},
        {"three levels",
         ((n("=", 1) && n("<", 5)) || n("=", 3)) && (n("=", 3) || n("=", 10)),
         {"row 3"}},
        {"a substring among them",
         n("=", 1) || (Condition::HasSubstring("a", "ROW") && n("<", 3)),
         {"row 1", "row 2"}},
        {"hostile value", Condition::Equal("a", "' OR 1=1 --"), {}},
    };
    for (const auto& [name, condition, rows] : cases) {
        SCOPED_TRACE(name);
        EXPECT_EQ(rows, Matching(condition));
    }
    EXPECT_FALSE((Condition::Null() || Condition::Null()).IsSet());
    EXPECT_TRUE((Condition::Null() || n("=", 1)).IsSet());
}

TEST_F(ConditionTest, ThousandsOfTermsAreNotTooDeep) {
    Insert("domain 1999");
    Insert("domain 2000");
    Condition any = Condition::Null();
    for (int i = 0; i < 2000; ++i) {
        any = any || Condition::Equal("a", ("domain " + std::to_string(i)).c_str());
    }
    EXPECT_THAT(Matching(Compare("n", "=", 0) && any), ElementsAre("domain 1999"));
}

TEST_F(ConditionTest, RefusesWhatIsNoNameOrOperator) {
    for (const char* name : {"", "a b", "a;", "a\"", "a--", "1a", ".a", "a.", "a..b", "a.1", "ä",
                             "1=1 OR a", "count(*)"}) {
        EXPECT_THROW(Compare(name, "=", 1), soci::soci_error) << name;
        EXPECT_THROW(Condition::HasSubstring(name, "x"), soci::soci_error) << name;
    }
    for (const char* op : {"", "= 1 OR n =", "like", "=;", "IS NOT"}) {
        EXPECT_THROW(Compare("n", op, 1), soci::soci_error) << op;
    }
}

}  // namespace
