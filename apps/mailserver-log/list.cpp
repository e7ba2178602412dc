#include <mailserver-log/db/union_all_select.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "attached_file.h"
#include "failure.h"
#include "list_filters.h"
#include "opened_store.h"
#include "record_writer.h"
#include "stores.h"
#include "subcommands.h"
#include "time_argument.h"

namespace serverlog::program {

namespace {

using merodbquery::Condition;

constexpr char kMainSchema[] = "main";
constexpr char kLongTermSchema[] = "DB1";

struct ListOptions {
    std::string store;
    std::string file;
    std::string since;
    std::string until;
    std::map<std::string, std::string> filters;  // by the option's name
    std::string find;
    std::string sort = "date";
    bool ascending = false;
    int limit = -1;
    int offset = 0;
    std::string format = "table";
};

TimeSpan TimeOption(const std::string& option, const std::string& text) {
    try {
        return ParseTime(text, std::time(nullptr));
    } catch (const std::invalid_argument& error) {
        throw CLI::ValidationError(option, error.what());
    }
}

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

template <class Store>
Condition MakeCondition(const ListOptions& options) {
    Condition condition = FilterCondition(Filters(Store()), options.filters);
    if (!options.find.empty()) {
        condition = condition && FindCondition(TextColumns<typename Store::Record>(), options.find);
    }
    if (!options.since.empty()) {
        condition = condition && Condition::ConditionFactory(
                                     "date", ">=", TimeOption("--since", options.since).first);
    }
    if (!options.until.empty()) {
        condition = condition && Condition::ConditionFactory(
                                     "date", "<=", TimeOption("--until", options.until).last);
    }
    return condition;
}

TableWriter::Style TerminalStyle() {
    TableWriter::Style style;
    winsize size = {};
    if (isatty(STDOUT_FILENO) == 0) {
        return style;
    }
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0) {
        style.width = size.ws_col;
    }
    // https://no-color.org: any value that is not empty.
    const char* no_color = std::getenv("NO_COLOR");
    style.with_colours = no_color == nullptr || *no_color == '\0';
    return style;
}

template <class Store>
std::unique_ptr<RecordWriter<Store>> MakeWriter(const std::string& format) {
    if (format == "json") {
        return std::make_unique<JsonRecordWriter<Store>>(std::cout, JsonWriter::Form::kArray);
    }
    if (format == "ndjson") {
        return std::make_unique<JsonRecordWriter<Store>>(std::cout, JsonWriter::Form::kLines);
    }
    if (format == "csv") {
        return std::make_unique<CsvRecordWriter<Store>>(std::cout);
    }
    return std::make_unique<TableRecordWriter<Store>>(std::cout, TerminalStyle());
}

template <class Store>
void CheckSort(const std::string& sort) {
    const std::vector<std::string> names = record::ColumnNames<typename Store::Record>();
    if (std::find(names.begin(), names.end(), sort) == names.end()) {
        throw CLI::ValidationError(
            "--sort", sort + " is no column; take one of " + CLI::detail::join(names, ", "));
    }
}

// The long-term file belongs to the store only; any other file is read alone.
template <class Store>
std::optional<AttachedFile> AttachLongTerm(const ListOptions& options, db::BaseDB& store) {
    if (!options.file.empty() || !std::filesystem::exists(Store::kMainPath)) {
        return std::nullopt;
    }
    OpenedStore<Store>(Store::kMainPath);  // brings its schema up to date
    return std::optional<AttachedFile>(std::in_place, store, Store::kMainPath, kLongTermSchema);
}

template <class Store>
void PrintRows(typename Store::DB& store, const Condition& condition, const ListOptions& options,
               const std::vector<std::string>& schemas) {
    typename Store::Record record;
    db::UnionAllSelectQuery query =
        store.MainTable().UnionStepList(condition, options.sort, options.ascending ? "ASC" : "DESC",
                                        options.offset, options.limit, schemas, record);
    const auto writer = MakeWriter<Store>(options.format);
    query.ExecuteWithoutPreFetch();
    while (std::cout && query.Fetch()) {
        writer->Write(record);
    }
    writer->Finish();
    if (!query.ErrorText().empty()) {
        throw Failure(query.ErrorText());
    }
}

template <class Store>
void List(const ListOptions& options) {
    CheckSort<Store>(options.sort);
    const Condition condition = MakeCondition<Store>(options);
    // A path below the folder of the stores would be made a store.
    if (!options.file.empty() && !std::filesystem::exists(options.file)) {
        throw Failure("there is no file " + options.file + "; check its name");
    }
    const std::string path =
        options.file.empty() ? Store::kPath : std::filesystem::absolute(options.file).string();
    OpenedStore<Store> store(path);
    const std::optional<AttachedFile> long_term = AttachLongTerm<Store>(options, store.Get());
    std::vector<std::string> schemas = {kMainSchema};
    if (long_term) {
        schemas.emplace_back(kLongTermSchema);
    }
    try {
        PrintRows<Store>(store.Get(), condition, options, schemas);
    } catch (...) {
        throw Failure("cannot read all of " + path + ": " + DescribeException() +
                      "; see the mail log, and try again");
    }
}

// A filter of the same name in several stores is one option.
void AddFilters(CLI::App& list, const std::shared_ptr<ListOptions>& options) {
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
        list.add_option_function<std::string>(
                "--" + option,
                [options, name = option](const std::string& text) {
                    options->filters[name] = text;
                },
                "of " + names)
            ->type_name("TEXT")
            ->group("Filters");
    }
}

}  // namespace

void AddList(CLI::App& program) {
    const auto options = std::make_shared<ListOptions>();
    CLI::App* list = program.add_subcommand(
        "list", "List the rows of a store and of its long-term file, the newest first");
    list->footer(
        "A filter asks for a part of the column, in any letter case; --status asks for send, "
        "receive, bounce, resend or a number, --type for the number of the tab (admin) or the "
        "whole word (security). A TIME is 2026-11-22, \"2026-11-22 10:00:00\", or 2h or 3d back "
        "from now.");
    list->add_option("STORE", options->store, "admin, mail or security")
        ->required()
        ->check(CLI::IsMember({AdminStore::kName, MailStore::kName, SecurityStore::kName}));
    list->add_option("--since", options->since, "Rows from this time on; a day from its start")
        ->type_name("TIME");
    list->add_option("--until", options->until, "Rows up to this time; a day up to its end")
        ->type_name("TIME");
    AddFilters(*list, options);
    list->add_option("--find", options->find, "Rows with this text in any of their texts")
        ->type_name("TEXT");
    list->add_option("--sort", options->sort, "Column to sort by [date]")->type_name("COLUMN");
    list->add_flag("--ascending", options->ascending, "The smallest first");
    list->add_option("--limit", options->limit, "At most so many rows")
        ->type_name("N")
        ->check(CLI::NonNegativeNumber);
    list->add_option("--offset", options->offset, "Leave out so many rows before the first")
        ->type_name("N")
        ->check(CLI::NonNegativeNumber);
    list->add_option("--format", options->format,
                     "table, json, ndjson (which load takes) or csv [table]")
        ->check(CLI::IsMember({"table", "json", "ndjson", "csv"}));
    list->add_option("--file", options->file, "Read this file alone, such as an archived store")
        ->type_name("PATH");
    list->callback([options] {
        VisitStore(options->store, [&options](auto store) { List<decltype(store)>(*options); });
    });
}

}  // namespace serverlog::program
