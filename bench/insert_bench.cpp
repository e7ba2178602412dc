#include <benchmark/benchmark.h>

#include <filesystem>
#include <stdexcept>

#include "measure.h"
#include "opened_mail_log.h"
#include "raw_database.h"

namespace bench {
namespace {

// As the subcommand load does it.
constexpr int kRows = 10'000;
constexpr int kRowsOfTransaction = 1'000;

std::string InsertPath() {
    return std::filesystem::path(kCurrentPath).replace_filename("bench_insert.db").string();
}

template <class Mail>
Mail MakeMail() {
    Mail mail;
    mail.size = 4711;
    mail.host = "mail.example.com";
    mail.mail_from = "somebody@example.org";
    mail.mail_to = "somebody.else@example.org";
    mail.subject = "An offer for next week";
    return mail;
}

template <class Mail>
void Change(Mail& mail, int row) {
    mail.date = row;
    mail.message_id = "<" + std::to_string(row * 7919L % 1'000'003) + "@mail.example.com>";
}

void NewStore() {
    std::filesystem::remove(InsertPath());
    OpenMailLog(InsertPath());
}

// `insert(row)` stores one row, `run(statement)` runs what begins and ends a transaction.
template <class Insert, class Run>
void InsertRows(Insert insert, Run run) {
    for (int row = 0; row < kRows; ++row) {
        if (row % kRowsOfTransaction == 0) {
            run("BEGIN");
        }
        insert(row);
        if (row % kRowsOfTransaction == kRowsOfTransaction - 1) {
            run("COMMIT");
        }
    }
}

void InsertRaw(benchmark::State& state) {
    Measure(state, [&] {
        state.PauseTiming();
        NewStore();
        state.ResumeTiming();
        RawDatabase file(InsertPath());
        RawStatement statement = file.Prepare(std::string("INSERT INTO mail_log_table (") +
                                              kRawColumns + ") VALUES (?,?,?,?,?,?,?,?,?,?)");
        auto mail = MakeMail<RawMail>();
        const auto insert = [&](int row) {
            Change(mail, row);
            statement.Bind(mail);
            statement.Step();
            statement.Reset();
        };
        InsertRows(insert, [&](const char* text) { file.Run(text); });
    });
}
BENCHMARK(InsertRaw)->Name("insert/floor")->Unit(benchmark::kMillisecond);

void InsertOurs(benchmark::State& state) {
    Measure(state, [&] {
        state.PauseTiming();
        NewStore();
        state.ResumeTiming();
        auto store = OpenMailLog(InsertPath());
        auto mail = MakeMail<serverlog::record::MailLog>();
        const auto insert = [&](int row) {
            Change(mail, row);
            if (!store.MainTable().Create(mail)) {
                throw std::runtime_error("a row was not stored");
            }
        };
        InsertRows(insert, [&](const char* text) { store.GetSession().RawQuery(text); });
    });
}
BENCHMARK(InsertOurs)->Name("insert/ours")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace bench
