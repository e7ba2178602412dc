#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/statement_rows.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

#include <gtest/gtest.h>
#include <json/reader.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace {

using namespace serverlog::log::adminlog;

Json::Value J(std::string const& text) {
    Json::CharReaderBuilder const builder;
    std::unique_ptr<Json::CharReader> const reader(builder.newCharReader());
    Json::Value value;
    if (!reader->parse(text.data(), text.data() + text.size(), &value, nullptr)) {
        throw std::invalid_argument(text);
    }
    return value;
}

TEST(ComparingTest, IsDiff) {
    struct Row {
        char const* name;
        char const* a;
        char const* b;
        char const* key_a;
        char const* key_b;
        bool expected;
    };
    for (Row const& row : {
             Row{"other content", R"({"k":1})", R"({"k":2})", "k", "k", true},
             Row{"other type", R"({"k":1})", R"({"k":"1"})", "k", "k", true},
             Row{"same", R"({"k":[1,{"a":2}]})", R"({"k":[1,{"a":2}]})", "k", "k", false},
             Row{"other key", R"({"k":1})", R"({"l":2})", "k", "l", true},
             Row{"missing in b", R"({"k":1})", R"({})", "k", "k", false},
             Row{"missing in a", R"({})", R"({"k":1})", "k", "k", false},
             Row{"null is a value", R"({"k":null})", R"({"k":1})", "k", "k", true},
             Row{"null object", "null", R"({"k":1})", "k", "k", false},
             Row{"empty key", R"({"":1})", R"({"":2})", "", "", false},
             Row{"empty key on one side", R"({"":1})", R"({"k":2})", "", "k", false},
         }) {
        EXPECT_EQ(IsDiff(J(row.a), J(row.b), row.key_a, row.key_b), row.expected) << row.name;
    }
    EXPECT_TRUE(IsDiff(J(R"({"k":1})"), J(R"({"k":2})"), "k"));
    EXPECT_THROW(IsDiff(J("[1]"), J("{}"), "k"), Json::LogicError);
}

TEST(ComparingTest, DiffCollector) {
    struct Row {
        char const* name;
        char const* old_info;
        char const* params;
        std::map<std::string, std::string> key_map;
        char const* expected;
    };
    for (Row const& row : {
             Row{"changed", R"({"a":1,"b":2})", R"({"a":3,"b":2})", {}, R"({"a":"a"})"},
             Row{"new in the request", R"({"a":1})", R"({"a":1,"b":2})", {}, "null"},
             Row{"missing in the request", R"({"a":1})", "{}", {}, "null"},
             Row{"other name", R"({"x":1,"a":2})", R"({"a":2})", {{"a", "x"}}, R"({"a":"x"})"},
             Row{"other name, same value", R"({"x":2,"a":1})", R"({"a":2})", {{"a", "x"}}, "null"},
             Row{"mapped but not sent", R"({"x":1})", "{}", {{"a", "x"}}, "null"},
             Row{"no old state", "null", R"({"a":1})", {}, "null"},
             Row{"no parameters", R"({"a":1})", "null", {}, "null"},
             Row{"parameters of the wrong shape", R"({"a":1})", "[1]", {}, "null"},
         }) {
        EXPECT_EQ(DiffCollector(J(row.old_info), J(row.params), row.key_map), J(row.expected))
            << row.name;
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
    struct Row {
        char const* key;
        char const* expected;
    };
    for (Row const& row :
         {Row{"t", "x"}, Row{"n", "5"}, Row{"b", "false"}, Row{"z", ""}, Row{"missing", ""}}) {
        EXPECT_EQ(GetKeyVal(object, row.key), row.expected) << row.key;
        EXPECT_EQ(TryGetKeyVal(object, row.key), row.expected) << row.key;
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
    struct Row {
        char const* name;
        char const* list;
        char const* by_id;
        char const* by_group_and_id;
    };
    for (Row const& row : {
             Row{"numbers and texts", R"([{"id":1,"g":"x"},{"id":"b","g":"x"}])",
                 R"({"1":{"id":1,"g":"x"},"b":{"id":"b","g":"x"}})",
                 R"({"x":{"1":{"id":1,"g":"x"},"b":{"id":"b","g":"x"}}})"},
             Row{"the last of equal ones", R"([{"id":1,"g":1,"v":1},{"id":1,"g":1,"v":2}])",
                 R"({"1":{"id":1,"g":1,"v":2}})", R"({"1":{"1":{"id":1,"g":1,"v":2}}})"},
             Row{"without the text", R"([{"id":"","g":1},{"g":1},{"id":2}])", R"({"2":{"id":2}})",
                 "null"},
             Row{"an object", R"({"first":{"id":1,"g":2}})", R"({"1":{"id":1,"g":2}})",
                 R"({"2":{"1":{"id":1,"g":2}}})"},
             Row{"null", "null", "null", "null"},
         }) {
        EXPECT_EQ(IndexedReference(J(row.list), "id"), J(row.by_id)) << row.name;
        EXPECT_EQ(IndexedReference(J(row.list), "id", "g"), J(row.by_group_and_id)) << row.name;
    }
}

TEST(FormattingTest, Words) {
    struct Row {
        char const* value;
        char const* enable;
        char const* yes_no;
    };
    for (Row const& row : {Row{"false", "disabled", "No"}, Row{R"("false")", "disabled", "No"},
                           Row{"true", "enabled", "Yes"}, Row{R"("False")", "enabled", "Yes"},
                           Row{R"("0")", "enabled", "Yes"}, Row{"0", "enabled", "Yes"},
                           Row{"null", "enabled", "Yes"}}) {
        Json::Value object;
        object["k"] = J(row.value);
        EXPECT_EQ(IsEnable("k", object), row.enable) << row.value;
        EXPECT_EQ(IsYesNo("k", object), row.yes_no) << row.value;
    }
    EXPECT_EQ(IsEnable("missing", J("{}")), "enabled");
    EXPECT_EQ(IsYesNo("missing", J("{}")), "Yes");
    EXPECT_EQ(IsBoolEnable(true), "enabled");
    EXPECT_EQ(IsBoolEnable(false), "disabled");
}

TEST(FormattingTest, Time00Format) {
    struct Row {
        int value;
        char const* expected;
    };
    for (Row const& row :
         {Row{0, "00"}, Row{7, "07"}, Row{9, "09"}, Row{10, "10"}, Row{-1, "-1"}}) {
        EXPECT_EQ(Time00Format(row.value), row.expected);
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
    struct Row {
        char const* name;
        char const* old_info;
        char const* params;
        char const* diff;
        std::vector<Translator> translators;
        StatementRows expected;
    };
    Translator const a = {"A", "a", nullptr};
    Translator const b = {"B", "b", Bracketed};
    for (Row const& row : {
             Row{"order of the translators",
                 R"({"a":1,"b":2})",
                 R"({"a":3,"b":4})",
                 R"({"a":"a","b":"b"})",
                 {b, a},
                 {{"B", "<2>", "<4>"}, {"A", "1", "3"}}},
             Row{"other key in the old state",
                 R"({"x":1,"a":9})",
                 R"({"a":3})",
                 R"({"a":"x"})",
                 {a},
                 {{"A", "1", "3"}}},
             Row{"equal once they are text", R"({"a":1})", R"({"a":"1"})", R"({"a":"a"})", {a}, {}},
             Row{"not in the change map", R"({"a":1})", R"({"a":2})", R"({"b":"b"})", {a}, {}},
             Row{"null change map", R"({"a":1})", R"({"a":2})", "null", {a}, {}},
             Row{"no translators", R"({"a":1})", R"({"a":2})", R"({"a":"a"})", {}, {}},
             Row{"a label is written once",
                 R"({"a":1,"b":1})",
                 R"({"a":2,"b":2})",
                 R"({"a":"a","b":"b"})",
                 {a, {"A", "b", nullptr}},
                 {{"A", "1", "2"}}},
             Row{"unless its first setting gave no row",
                 R"({"a":1,"b":1})",
                 R"({"a":"1","b":2})",
                 R"({"a":"a","b":"b"})",
                 {a, {"A", "b", nullptr}},
                 {{"A", "1", "2"}}},
         }) {
        EXPECT_EQ(MuggleTranslate(J(row.old_info), J(row.params), J(row.diff), row.translators),
                  row.expected)
            << row.name;
    }
    StatementRows const with_args = {{"A", "x", "y", "1", "2"}};
    EXPECT_EQ(MuggleTranslate(J(R"({"a":1})"), J(R"({"a":2})"), J(R"({"a":"a"})"), {"x", "y"}, {a}),
              with_args);
    EXPECT_THROW(MuggleTranslate(J(R"({"a":[]})"), J(R"({"a":2})"), J(R"({"a":"a"})"), {a}),
                 Json::LogicError);
}

}  // namespace
