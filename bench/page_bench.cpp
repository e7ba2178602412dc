#include <benchmark/benchmark.h>

#include <stdexcept>
#include <tuple>

#include "measure.h"
#include "opened_mail_log.h"
#include "raw_database.h"

namespace bench {
namespace {

using merodbquery::Condition;

constexpr int kPageRows = 50;

/// A page as LisTable is asked for it and as one would write it by hand.
struct PageQuery {
    const char* name;
    std::string where;    ///< with its WHERE, or empty
    Condition condition;  ///< the same
    double depth;         ///< where the page begins: 0 is the first row, 1 the end
    bool with_hits;
    /// Whether the floor is the page's statement alone, without counting.
    bool floor_without_count;
};

std::string PlainPage(const PageQuery& query, long offset) {
    const std::string columns = std::string("SELECT ") + kRawColumns + " FROM ";
    return columns + "main.mail_log_table" + query.where + " UNION ALL " + columns +
           "DB1.mail_log_table" + query.where + " ORDER BY date DESC LIMIT " +
           std::to_string(kPageRows) + " OFFSET " + std::to_string(offset);
}

long PlainCount(RawDatabase& files, const PageQuery& query) {
    const std::string count = "SELECT COUNT(*) FROM ";
    return files.Number(count + "main.mail_log_table" + query.where) +
           files.Number(count + "DB1.mail_log_table" + query.where);
}

void RequirePage(const PageQuery& query, std::size_t rows) {
    if ((rows > 0) != query.with_hits) {
        throw std::runtime_error(std::string(query.name) + ": not the rows that were to come");
    }
}

void PageRaw(benchmark::State& state, const PageQuery& query) {
    RawDatabase files = OpenBothFiles();
    const auto total = static_cast<double>(PlainCount(files, query));
    const std::string page = PlainPage(query, static_cast<long>(total * query.depth));
    Measure(state, [&] {
        if (!query.floor_without_count) {
            benchmark::DoNotOptimize(PlainCount(files, query));
        }
        RequirePage(query, files.Rows(page).size());
    });
}

void PageOurs(benchmark::State& state, const PageQuery& query) {
    auto store = OpenBothMailLogs();
    auto& table = store.MainTable();
    const auto page = [&](int offset) {
        return table.UnionList(query.condition, "date", "DESC", offset, kPageRows, store.Schemas());
    };
    const auto total = static_cast<double>(std::get<0>(page(0)));
    const int offset = static_cast<int>(total * query.depth);
    Measure(state, [&] { RequirePage(query, std::get<1>(page(offset)).size()); });
}

Condition Status(const char* status) {
    return Condition::ConditionFactory<std::string>("status", "=", status);
}

[[maybe_unused]] const bool kRegistered = [] {
    static const PageQuery queries[] = {
        {"first-page", "", Condition::Null(), 0, true, false},
        {"page-quarter", "", Condition::Null(), 0.25, true, false},
        {"page-middle", "", Condition::Null(), 0.5, true, false},
        {"page-three-quarters", "", Condition::Null(), 0.75, true, false},
        {"search-no-hit", " WHERE contains_ignoring_case(subject, 'NOWHERE')",
         Condition::HasSubstring("subject", "NOWHERE"), 0, false, true},
        {"search-many-hits", " WHERE contains_ignoring_case(subject, 'OFFER')",
         Condition::HasSubstring("subject", "OFFER"), 0, true, false},
        {"status-common", " WHERE status = '0'", Status("0"), 0, true, false},
        {"status-rare", " WHERE status = '4'", Status("4"), 0, true, false},
    };
    for (const PageQuery& query : queries) {
        const std::string name = query.name;
        benchmark::RegisterBenchmark((name + "/floor").c_str(), PageRaw, query)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((name + "/ours").c_str(), PageOurs, query)
            ->Unit(benchmark::kMillisecond);
    }
    return true;
}();

}  // namespace
}  // namespace bench
