#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/statement_rows.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

#include "support/json_value.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

using namespace serverlog::log::adminlog;

constexpr auto J = test::JsonOf;

TEST(ComparingTest, IsDiff) {
    test::Table<char const*, char const*, char const*, char const*, char const*, bool> const rows =
        {
            {"other content", R"({"k":1})", R"({"k":2})", "k", "k", true},
            {"other type", R"({"k":1})", R"({"k":"1"})", "k", "k", true},
            {"same", R"({"k":[1,{"a":2}]})", R"({"k":[1,{"a":2}]})", "k", "k", false},
            {"other key", R"({"k":1})", R"({"l":2})", "k", "l", true},
            {"missing in b", R"({"k":1})", R"({})", "k", "k", false},
            {"missing in a", R"({})", R"({"k":1})", "k", "k", false},
            {"null is a value", R"({"k":null})", R"({"k":1})", "k", "k", true},
            {"null object", "null", R"({"k":1})", "k", "k", false},
            {"empty key", R"({"":1})", R"({"":2})", "", "", false},
            {"empty key on one side", R"({"":1})", R"({"k":2})", "", "k", false},
        };
    for (auto const& [name, a, b, key_a, key_b, expected] : rows) {
        EXPECT_EQ(IsDiff(J(a), J(b), key_a, key_b), expected) << name;
    }
    EXPECT_TRUE(IsDiff(J(R"({"k":1})"), J(R"({"k":2})"), "k"));
    EXPECT_THROW(IsDiff(J("[1]"), J("{}"), "k"), Json::LogicError);
}

TEST(ComparingTest, DiffCollector) {
    test::Table<char const*, char const*, char const*, std::map<std::string, std::string>,
                char const*> const rows = {
        {"changed", R"({"a":1,"b":2})", R"({"a":3,"b":2})", {}, R"({"a":"a"})"},
        {"new in the request", R"({"a":1})", R"({"a":1,"b":2})", {}, "null"},
        {"missing in the request", R"({"a":1})", "{}", {}, "null"},
        {"other name", R"({"x":1,"a":2})", R"({"a":2})", {{"a", "x"}}, R"({"a":"x"})"},
        {"other name, same value", R"({"x":2,"a":1})", R"({"a":2})", {{"a", "x"}}, "null"},
        {"mapped but not sent", R"({"x":1})", "{}", {{"a", "x"}}, "null"},
        {"no old state", "null", R"({"a":1})", {}, "null"},
        {"no parameters", R"({"a":1})", "null", {}, "null"},
        {"parameters of the wrong shape", R"({"a":1})", "[1]", {}, "null"},
    };
    for (auto const& [name, old_info, params, key_map, expected] : rows) {
        EXPECT_EQ(DiffCollector(J(old_info), J(params), key_map), J(expected)) << name;
    }
    EXPECT_EQ(DefaultDiff(J(R"({"a":1,"b":2})"), J(R"({"b":3,"a":3})")), J(R"({"a":"a","b":"b"})"));
}

TEST(ComparingTest, CheckParams) {
    EXPECT_TRUE(CheckParams(J(R"({"a":1,"b":null})"), {"a", "b"}));
    EXPECT_FALSE(CheckParams(J(R"({"a":1})"), {"a", "b"}));
    EXPECT_TRUE(CheckParams(J("null"), {}));
}

TEST(ReadingTest, Members) {
    Json::Value const object =
        J(R"({"t":"x","n":5,"b":false,"z":null,"l":["a",2],"o":{"k":1},"e":[]})");
    test::Table<char const*, char const*> const rows = {
        {"t", "x"}, {"n", "5"}, {"b", "false"}, {"z", ""}, {"missing", ""},
    };
    for (auto const& [key, expected] : rows) {
        EXPECT_EQ(GetKeyVal(object, key), expected) << key;
        EXPECT_EQ(TryGetKeyVal(object, key), expected) << key;
    }
    for (char const* key : {"l", "o"}) {
        EXPECT_THROW(GetKeyVal(object, key), Json::LogicError) << key;
        EXPECT_EQ(TryGetKeyVal(object, key), "") << key;
    }
    EXPECT_THROW(GetKeyVal(J("[1]"), "t"), Json::LogicError);
    EXPECT_EQ(TryGetKeyVal(J("[1]"), "t"), "");

    EXPECT_EQ(GetArrayVal(object, "l", 0), "a");
    EXPECT_EQ(GetArrayVal(object, "l", 1), "2");
    EXPECT_EQ(GetArrayVal(object, "l", 2), "");
    EXPECT_EQ(GetArrayVal(object, "e", 0), "");
    EXPECT_EQ(GetArrayVal(object, "missing", 0), "");
    EXPECT_EQ(GetObjectVal(object, "o"), J(R"({"k":1})"));
    EXPECT_EQ(GetObjectVal(object, "missing"), Json::Value());
}

TEST(ReadingTest, IndexedReference) {
    test::Table<char const*, char const*, char const*, char const*> const rows = {
        {"numbers and texts", R"([{"id":1,"g":"x"},{"id":"b","g":"x"}])",
         R"({"1":{"id":1,"g":"x"},"b":{"id":"b","g":"x"}})",
         R"({"x":{"1":{"id":1,"g":"x"},"b":{"id":"b","g":"x"}}})"},
        {"the last of equal ones", R"([{"id":1,"g":1,"v":1},{"id":1,"g":1,"v":2}])",
         R"({"1":{"id":1,"g":1,"v":2}})", R"({"1":{"1":{"id":1,"g":1,"v":2}}})"},
        {"without the text", R"([{"id":"","g":1},{"g":1},{"id":2}])", R"({"2":{"id":2}})", "null"},
        {"an object", R"({"first":{"id":1,"g":2}})", R"({"1":{"id":1,"g":2}})",
         R"({"2":{"1":{"id":1,"g":2}}})"},
        {"null", "null", "null", "null"},
    };
    for (auto const& [name, list, by_id, by_group_and_id] : rows) {
        EXPECT_EQ(IndexedReference(J(list), "id"), J(by_id)) << name;
        EXPECT_EQ(IndexedReference(J(list), "id", "g"), J(by_group_and_id)) << name;
    }
}

TEST(FormattingTest, Words) {
    test::Table<char const*, char const*, char const*> const rows = {
        {"false", "disabled", "No"},  {R"("false")", "disabled", "No"},
        {"true", "enabled", "Yes"},   {R"("False")", "enabled", "Yes"},
        {R"("0")", "enabled", "Yes"}, {"0", "enabled", "Yes"},
        {"null", "enabled", "Yes"},
    };
    for (auto const& [value, enable, yes_no] : rows) {
        Json::Value object;
        object["k"] = J(value);
        EXPECT_EQ(IsEnable("k", object), enable) << value;
        EXPECT_EQ(IsYesNo("k", object), yes_no) << value;
    }
    EXPECT_EQ(IsEnable("missing", J("{}")), "enabled");
    EXPECT_EQ(IsYesNo("missing", J("{}")), "Yes");
    EXPECT_EQ(IsBoolEnable(true), "enabled");
    EXPECT_EQ(IsBoolEnable(false), "disabled");
}

TEST(FormattingTest, Time00Format) {
    test::Table<int, char const*> const rows = {
        {0, "00"}, {7, "07"}, {9, "09"}, {10, "10"}, {-1, "-1"},
    };
    for (auto const& [value, expected] : rows) {
        EXPECT_EQ(Time00Format(value), expected);
    }
}

TEST(StatementRowsTest, ReadyMadeResults) {
    Json::Value const named = J(R"({"name":"x"})");
    Json::Value const none;
    EXPECT_TRUE(Ignore().empty());
    EXPECT_EQ(NoReplace(), StatementRows{StatementRow{}});
    EXPECT_EQ(IntuitionNewName("", none, named, none, none), StatementRows{{"x"}});
    EXPECT_EQ(IntuitionNewName("", named, none, none, none), StatementRows{{""}});
    EXPECT_EQ(IntuitionPastName("", named, none, none, none), StatementRows{{"x"}});
}

std::string Bracketed(std::string const& member, Json::Value const& object) {
    return "<" + object[member].asString() + ">";
}

TEST(MuggleTranslateTest, Rows) {
    Translator const a = {"A", "a", nullptr};
    Translator const b = {"B", "b", Bracketed};
    test::Table<char const*, char const*, char const*, char const*, std::vector<Translator>,
                StatementRows> const rows = {
        {"order of the translators",
         R"({"a":1,"b":2})",
         R"({"a":3,"b":4})",
         R"({"a":"a","b":"b"})",
         {b, a},
         {{"B", "<2>", "<4>"}, {"A", "1", "3"}}},
        {"other key in the old state",
         R"({"x":1,"a":9})",
         R"({"a":3})",
         R"({"a":"x"})",
         {a},
         {{"A", "1", "3"}}},
        {"equal once they are text", R"({"a":1})", R"({"a":"1"})", R"({"a":"a"})", {a}, {}},
        {"not in the change map", R"({"a":1})", R"({"a":2})", R"({"b":"b"})", {a}, {}},
        {"null change map", R"({"a":1})", R"({"a":2})", "null", {a}, {}},
        {"no translators", R"({"a":1})", R"({"a":2})", R"({"a":"a"})", {}, {}},
        {"a label is written once",
         R"({"a":1,"b":1})",
         R"({"a":2,"b":2})",
         R"({"a":"a","b":"b"})",
         {a, {"A", "b", nullptr}},
         {{"A", "1", "2"}}},
        {"unless its first setting gave no row",
         R"({"a":1,"b":1})",
         R"({"a":"1","b":2})",
         R"({"a":"a","b":"b"})",
         {a, {"A", "b", nullptr}},
         {{"A", "1", "2"}}},
    };
    for (auto const& [name, old_info, params, diff, translators, expected] : rows) {
        EXPECT_EQ(MuggleTranslate(J(old_info), J(params), J(diff), translators), expected) << name;
    }
    StatementRows const with_args = {{"A", "x", "y", "1", "2"}};
    EXPECT_EQ(MuggleTranslate(J(R"({"a":1})"), J(R"({"a":2})"), J(R"({"a":"a"})"), {"x", "y"}, {a}),
              with_args);
    EXPECT_THROW(MuggleTranslate(J(R"({"a":[]})"), J(R"({"a":2})"), J(R"({"a":"a"})"), {a}),
                 Json::LogicError);
}

}  // namespace
