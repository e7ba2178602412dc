#include <benchmark/benchmark.h>

#include <stdexcept>

#include "measure.h"
#include "opened_mail_log.h"
#include "raw_database.h"
#include "stores.h"

namespace bench {
namespace {

const std::string kSelectAll = std::string("SELECT ") + kRawColumns + " FROM mail_log_table";

void RequireAll(std::size_t rows) {
    if (rows != static_cast<std::size_t>(Sizes().current_rows)) {
        throw std::runtime_error("not all rows came");
    }
}

void ListRaw(benchmark::State& state) {
    RawDatabase file(kCurrentPath);
    Measure(state, [&] { RequireAll(file.Rows(kSelectAll).size()); });
}
BENCHMARK(ListRaw)->Name("fetch/floor")->Unit(benchmark::kMillisecond);

void ListOurs(benchmark::State& state) {
    auto store = OpenMailLog(kCurrentPath);
    Measure(state, [&] { RequireAll(store.MainTable().List().size()); });
}
BENCHMARK(ListOurs)->Name("fetch/ours")->Unit(benchmark::kMillisecond);

void StepRaw(benchmark::State& state) {
    RawDatabase file(kCurrentPath);
    Measure(state, [&] {
        RawStatement statement = file.Prepare(kSelectAll);
        RawMail mail;
        std::size_t rows = 0;
        for (; statement.Step(); ++rows) {
            statement.Read(mail);
        }
        RequireAll(rows);
    });
}
BENCHMARK(StepRaw)->Name("fetch-step/floor")->Unit(benchmark::kMillisecond);

void StepOurs(benchmark::State& state) {
    auto store = OpenMailLog(kCurrentPath);
    Measure(state, [&] {
        serverlog::record::MailLog record;
        auto query = store.MainTable().UnionStepList(merodbquery::Condition::Null(), "", "", 0, -1,
                                                     {"main"}, record);
        query.ExecuteWithoutPreFetch();
        std::size_t rows = 0;
        while (query.Fetch()) {
            ++rows;
        }
        RequireAll(rows);
    });
}
BENCHMARK(StepOurs)->Name("fetch-step/ours")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bench
