#pragma once

#include <mailserver-log/record/columns.h>
#include <merodbquery/condition.h>

#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "listing/list_filters.h"
#include "stores/stores.h"

namespace serverlog::program {

/// What a command line asks for of the rows of a store.
struct Selection {
    std::string store;
    std::string file;  ///< another file to read in place of the store; empty for none
    std::string since;
    std::string until;
    std::map<std::string, std::string> filters;  ///< by the option's name
    std::string find;
    std::string sort = "date";
    bool ascending = false;
    int limit = -1;
    int offset = 0;
};

/// What to tell about these options behind the help of a command.
inline constexpr char kSelectionHelp[] =
    "A filter asks for a part of the column, in any letter case; --status asks for send, receive, "
    "bounce, resend or a number, --type for the number of the tab (admin) or the whole word "
    "(security). A TIME is 2026-11-22, \"2026-11-22 10:00:00\", or 2h or 3d back from now.";

/// Adds the options of a selection, and its store.
///
/// @param selection  gets what they are given; must outlive `command`
void AddSelection(CLI::App& command, Selection& selection);

/// Adds the options --since and --until.
///
/// @param since, until  get what they are given; must outlive `command`
void AddTimes(CLI::App& command, std::string& since, std::string& until);

/// The condition that these two options make. Throws CLI::ValidationError for one that is no time.
merodbquery::Condition TimeCondition(const std::string& since, const std::string& until);

/// The condition that all of its filters make.
///
/// @param filters       those of the store
/// @param text_columns  where to look for the text of --find
///
/// Throws CLI::ValidationError for an option that is no filter of the store, or whose text means
/// nothing.
merodbquery::Condition SelectionCondition(const Selection& selection,
                                          const std::vector<Filter>& filters,
                                          const std::vector<std::string>& text_columns);

/// Throws CLI::ValidationError unless the selection sorts by one of `columns`.
void CheckSort(const Selection& selection, const std::vector<std::string>& columns);

/// The names of the columns that hold texts.
template <class Record>
std::vector<std::string> TextColumns() {
    std::vector<std::string> names;
    record::ForEachColumn<Record>([&names](const auto& column) {
        if constexpr (std::is_same_v<decltype(column.member), std::string Record::*>) {
            names.emplace_back(column.name);
        }
    });
    return names;
}

/// SelectionCondition for a store of stores.h.
template <class Store>
merodbquery::Condition StoreCondition(const Selection& selection) {
    return SelectionCondition(selection, Filters(Store()), TextColumns<typename Store::Record>());
}

}  // namespace serverlog::program
