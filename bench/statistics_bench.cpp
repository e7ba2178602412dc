#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/old_log/maillogger.h>
#include <mailserver/mail_conf.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "measure.h"
#include "old_log/log_files.h"
#include "statement_recorder.h"
#include "stores.h"
#include "support/fake_clock.h"

namespace bench {
namespace {

constexpr char kDomains[] = "/var/packages/PostCube-Server/etc/domains.json";
constexpr int kPeriod = 300;
constexpr long kHoursToCount = 3;
constexpr long kHour = 3600;
constexpr long kDay = 24 * kHour;

// A cycle at the end of the log, a few hours behind the last one, that makes the statistics anew.
// It needs the long-term files: they were rewritten behind these hours.
void PrepareCycle() {
    std::filesystem::remove(statistic_log::kStatisticPath);
    std::filesystem::remove(statistic_log::kSecurityStatisticPath);
    const long now = EndOfRows();
    for (const auto& log : {statistic_log::kMailLog, statistic_log::kSecurityLog}) {
        const timespec times[2] = {{now + kDay, 0}, {now + kDay, 0}};
        utimensat(AT_FDCWD, log.long_term_path, times, 0);
    }
    test::FakeClock::Set(now);
    mailConfSet("log_last_count_time", std::to_string(now - kHoursToCount * kHour), false, 0);
}

void RunCycle(benchmark::State& state) {
    MailLogger engine(kPeriod);
    if (engine.error() != 0 || engine.securityStatistic() != 0) {
        state.SkipWithError("the engine cannot work here; the system log tells why");
        return;
    }
    engine.statistic();
}

std::vector<RecordedStatement> RecordCycle(benchmark::State& state) {
    MakeSecurityStores();
    std::ofstream(kDomains) << R"({"domains":[{"domain_id":1,"name":"example.org"}]})";
    PrepareCycle();
    StatementRecorder recorder;
    RunCycle(state);
    return recorder.Take();
}

template <class Cycle>
void MeasureCycle(benchmark::State& state, Cycle cycle) {
    Measure(state, [&] {
        state.PauseTiming();
        PrepareCycle();
        state.ResumeTiming();
        cycle();
    });
}

void CycleOurs(benchmark::State& state) {
    RecordCycle(state);  // for the same start as the floor has
    MeasureCycle(state, [&] { RunCycle(state); });
}
BENCHMARK(CycleOurs)->Name("statistics/ours")->Unit(benchmark::kMillisecond);

// The same statements in the same order on connections of their own, without the engine.
void CycleRaw(benchmark::State& state) {
    const std::vector<RecordedStatement> statements = RecordCycle(state);
    MeasureCycle(state, [&] { RunAgain(statements); });
}
BENCHMARK(CycleRaw)->Name("statistics/floor")->Unit(benchmark::kMillisecond);

// How SQLite goes about what a cycle asks of the logs. Nothing is measured.
void CyclePlans(benchmark::State& state) {
    const std::vector<RecordedStatement> statements = RecordCycle(state);
    PrepareCycle();
    for (const std::string& plan : PlansOf(statements)) {
        std::cerr << plan << '\n';
    }
    MeasureCycle(state, [] {});
}
BENCHMARK(CyclePlans)->Name("statistics/plans")->Iterations(1);

}  // namespace
}  // namespace bench
