#include "listing/selection.h"

#include <algorithm>
#include <ctime>
#include <stdexcept>

#include "listing/time_argument.h"

namespace serverlog::program {

namespace {

using merodbquery::Condition;

TimeSpan TimeOption(const std::string& option, const std::string& text) {
    try {
        return ParseTime(text, std::time(nullptr));
    } catch (const std::invalid_argument& error) {
        throw CLI::ValidationError(option, error.what());
    }
}

// A filter of the same name in several stores is one option.
void AddFilters(CLI::App& command, Selection& selection) {
    std::map<std::string, std::string> stores;
    const auto collect = [&stores](const std::vector<Filter>& filters, const std::string& store) {
        for (const Filter& filter : filters) {
            std::string& names = stores[filter.option];
            names += (names.empty() ? "" : ", ") + store;
        }
    };
    collect(Filters(AdminStore()), AdminStore::kName);
    collect(Filters(MailStore()), MailStore::kName);
    collect(Filters(SecurityStore()), SecurityStore::kName);
    for (const auto& [option, names] : stores) {
        command
            .add_option_function<std::string>(
                "--" + option,
                [&selection, name = option](const std::string& text) {
                    selection.filters[name] = text;
                },
                "of " + names)
            ->type_name("TEXT")
            ->group("Filters");
    }
}

}  // namespace

void AddTimes(CLI::App& command, std::string& since, std::string& until) {
    command.add_option("--since", since, "Rows from this time on; a day from its start")
        ->type_name("TIME");
    command.add_option("--until", until, "Rows up to this time; a day up to its end")
        ->type_name("TIME");
}

void AddSelection(CLI::App& command, Selection& selection) {
    command.add_option("STORE", selection.store, "admin, mail or security")
        ->required()
        ->check(CLI::IsMember({AdminStore::kName, MailStore::kName, SecurityStore::kName}));
    AddTimes(command, selection.since, selection.until);
    AddFilters(command, selection);
    command.add_option("--find", selection.find, "Rows with this text in any of their texts")
        ->type_name("TEXT");
    command.add_option("--sort", selection.sort, "Column to sort by [date]")->type_name("COLUMN");
    command.add_flag("--ascending", selection.ascending, "The smallest first");
    command.add_option("--limit", selection.limit, "At most so many rows")
        ->type_name("N")
        ->check(CLI::NonNegativeNumber);
    command.add_option("--offset", selection.offset, "Leave out so many rows before the first")
        ->type_name("N")
        ->check(CLI::NonNegativeNumber);
    command.add_option("--file", selection.file, "Read this file alone, such as an archived store")
        ->type_name("PATH");
}

Condition TimeCondition(const std::string& since, const std::string& until) {
    Condition condition = Condition::Null();
    if (!since.empty()) {
        condition = Condition::ConditionFactory("date", ">=", TimeOption("--since", since).first);
    }
    if (!until.empty()) {
        condition = condition &&
                    Condition::ConditionFactory("date", "<=", TimeOption("--until", until).last);
    }
    return condition;
}

Condition SelectionCondition(const Selection& selection, const std::vector<Filter>& filters,
                             const std::vector<std::string>& text_columns) {
    Condition condition = FilterCondition(filters, selection.filters);
    if (!selection.find.empty()) {
        condition = condition && FindCondition(text_columns, selection.find);
    }
    return condition && TimeCondition(selection.since, selection.until);
}

void CheckSort(const Selection& selection, const std::vector<std::string>& columns) {
    if (std::find(columns.begin(), columns.end(), selection.sort) == columns.end()) {
        throw CLI::ValidationError("--sort", selection.sort + " is no column; take one of " +
                                                 CLI::detail::join(columns, ", "));
    }
}

}  // namespace serverlog::program
