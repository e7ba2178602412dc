#include <mailserver-log/log/adminlog/operations.h>

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "log/adminlog/toolkit/comparing.h"

namespace {

using namespace serverlog::log::adminlog;

std::map<std::string, LoggerConfig (*)()> const& Factories() {
    static std::map<std::string, LoggerConfig (*)()> const factories = {
#define MAILSERVER_LOG_OPERATION(key, info, diff, translate, ...) {#key, Get_##key##_Config},
#include <mailserver-log/log/adminlog/operations/table.def>
#undef MAILSERVER_LOG_OPERATION
    };
    return factories;
}

std::set<int> TabsOf(LoggerConfig const& config) {
    std::set<int> tabs;
    for (TabLog const& tab : config.tabs) {
        tabs.insert(tab.tab_type);
    }
    return tabs;
}

TEST(OperationsTest, EachKeyIsFoundWithAndWithoutAVersion) {
    for (auto const& [key, factory] : Factories()) {
        for (std::string const& name : {key, key + "_v1", key + "_v12"}) {
            LoggerConfig const config = GetConfig(name);
            EXPECT_EQ(config.name, key) << name;
            EXPECT_EQ(TabsOf(config), TabsOf(factory())) << name;
        }
    }
}

TEST(OperationsTest, NoOtherNameIsFound) {
    for (std::string const name : {"", "_v1", "webapi_domain_set", "Webapi_Domain_Set_",
                                   "Webapi_Domain_Set_v1_v1", "Webapi_Domain_Nothing_v1"}) {
        LoggerConfig const config = GetConfig(name);
        EXPECT_EQ(config.name, "") << name;
        EXPECT_TRUE(config.tabs.empty()) << name;
        EXPECT_FALSE(config.info || config.diff || config.translate) << name;
    }
}

// A template reaches the line unescaped, and its placeholders are filled from 0 on.
TEST(OperationsTest, TemplatesAreFitForTheLine) {
    for (auto const& [key, factory] : Factories()) {
        LoggerConfig const config = factory();
        ASSERT_FALSE(config.tabs.empty()) << key;
        for (TabLog const& tab : config.tabs) {
            EXPECT_TRUE(tab.tab_type >= 1 && tab.tab_type <= 32) << key;
            ASSERT_FALSE(tab.statements.empty()) << key;
            for (std::string const& statement : tab.statements) {
                EXPECT_EQ(statement.find_first_of("\"\\\n"), std::string::npos) << statement;
                EXPECT_EQ(statement.back(), '.') << statement;
                bool const fixed = statement.find("%0%") == std::string::npos;
                EXPECT_TRUE(config.translate || fixed) << key << ": " << statement;
            }
        }
    }
}

// Whoever adds an operation or takes one away changes these on purpose; a row lost in a merge does
// not.
TEST(OperationsTest, TheTableIsWhole) {
    int without_info = 0;
    int without_diff = 0;
    int with_default_diff = 0;
    for (auto const& [key, factory] : Factories()) {
        LoggerConfig const config = factory();
        without_info += config.info ? 0 : 1;
        without_diff += config.diff ? 0 : 1;
        auto const* diff = config.diff.target<decltype(&DefaultDiff)>();
        with_default_diff += diff != nullptr && *diff == &DefaultDiff ? 1 : 0;
    }
    EXPECT_EQ(Factories().size(), 145U);
    EXPECT_EQ(without_info, 47);
    EXPECT_EQ(without_diff, 102);
    EXPECT_EQ(with_default_diff, 20);
}

TEST(OperationsTest, ThreeOperationsHaveAFixedText) {
    std::set<std::string> fixed;
    for (auto const& [key, factory] : Factories()) {
        if (!factory().translate) {
            fixed.insert(key);
        }
    }
    std::set<std::string> const expected = {"Webapi_Log_ImportCA", "Webapi_Queue_DeleteAll",
                                            "Webapi_Queue_FlushAll"};
    EXPECT_EQ(fixed, expected);
}

TEST(OperationsTest, TwoOperationsHaveTwoTabs) {
    std::map<std::string, std::vector<int>> twofold;
    for (auto const& [key, factory] : Factories()) {
        LoggerConfig const config = factory();
        if (config.tabs.size() != 1) {
            for (TabLog const& tab : config.tabs) {
                twofold[key].push_back(tab.tab_type);
            }
        }
    }
    std::map<std::string, std::vector<int>> const expected = {
        {"Webapi_Domain_Setting_Set", {21, 26}}, {"Webapi_Domain_User_Add_Members", {22, 23}}};
    EXPECT_EQ(twofold, expected);
}

}  // namespace
