// Prints the table of operations and the titles of the tabs as JSON, for scripts/operations-page.

#include <mailserver-log/log/adminlog/operations.h>

#include <iostream>
#include <vector>

#include "log/adminlog/operations/tab_titles.h"
#include "utils/json_text.h"

namespace {

using namespace serverlog::log::adminlog;

std::vector<LoggerConfig> Operations() {
    return {
#define MAILSERVER_LOG_OPERATION(key, info, diff, translate, ...) Get_##key##_Config(),
#include <mailserver-log/log/adminlog/operations/table.def>
#undef MAILSERVER_LOG_OPERATION
    };
}

Json::Value OperationRow(LoggerConfig const& config, TabLog const& tab) {
    Json::Value row;
    row["operation"] = config.name;
    row["tab"] = tab.tab_type;
    for (std::string const& statement : tab.statements) {
        row["templates"].append(statement);
    }
    return row;
}

Json::Value TitleRow(TabTitle const& title) {
    Json::Value row;
    row["tab"] = title.tab_type;
    row["section"] = title.section;
    row["key"] = title.key;
    row["texts"] = title.is_system_text ? "texts/platform/enu/strings" : "texts/enu/strings";
    return row;
}

}  // namespace

int main() {
    Json::Value table;
    for (LoggerConfig const& config : Operations()) {
        for (TabLog const& tab : config.tabs) {
            table["rows"].append(OperationRow(config, tab));
        }
    }
    for (TabTitle const& title : kTabTitles) {
        table["titles"].append(TitleRow(title));
    }
    std::cout << serverlog::utils::ToJsonText(table);
    return 0;
}
