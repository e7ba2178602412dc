#include <ctime>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "mail_events/collector_report.h"
#include "output/display_text.h"
#include "output/readable.h"
#include "output/table_writer.h"
#include "output/terminal_style.h"
#include "process/failure.h"
#include "stores/archive_report.h"
#include "stores/store_facts.h"
#include "stores/store_report.h"
#include "stores/stores.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

std::string TimeCell(const std::optional<long long>& time) {
    return time ? ReadableTime(static_cast<std::time_t>(*time)) : "-";
}

void WriteFile(TableWriter& table, const std::string& store, const FileReport& file) {
    const std::string name = std::filesystem::path(file.path).filename().string();
    if (!file.exists) {
        table.Write({store, name, "-", "-", "-", "-", "-"});
    } else if (!file.unreadable.empty()) {
        table.Write({store, name, "?", "?", "?", ReadableSize(file.size), "?"});
    } else {
        table.Write({store, name, std::to_string(file.rows), TimeCell(file.oldest),
                     TimeCell(file.newest), ReadableSize(file.size), std::to_string(file.version)});
    }
}

void WriteFiles(const std::vector<StoreReport>& stores) {
    TableWriter table(std::cout, {"STORE", "FILE", "ROWS", "OLDEST", "NEWEST", "SIZE", "VERSION"},
                      TerminalStyle());
    for (const StoreReport& store : stores) {
        WriteFile(table, store.name, store.current);
        WriteFile(table, store.name, store.long_term);
        WriteFile(table, store.name, store.archive);
    }
    table.Finish();
}

void WriteRotation(const StoreReport& store) {
    std::cout << store.name << ": "
              << (store.long_term.exists ? "rotated " + ReadableTime(store.long_term.written)
                                         : "never rotated");
    if (store.current.rows_before_today > 0) {
        std::cout << ", rows that wait for rotation: " << store.current.rows_before_today;
    }
    std::cout << (store.operation_under_way ? ", being rotated, archived or upgraded right now\n"
                                            : "\n");
}

void WriteArchive(const ArchiveReport& archive) {
    std::cout << "archive: " << (archive.enabled ? "on, to " + archive.destination : "off")
              << "; rows that wait: " << archive.rows
              << ", plain text mail logs: " << archive.plain_logs;
    if (archive.last_plain_log > 0) {
        std::cout << "; newest log archived: " << ReadableTime(archive.last_plain_log);
    }
    std::cout << "\n";
}

void WriteCollector(const CollectorReport& collector) {
    if (collector.lines == 0) {
        std::cout << "mail events: no line read yet\n";
        return;
    }
    std::cout << "mail events: read";
    if (collector.newest_line > 0) {
        std::cout << " up to " << ReadableTime(collector.newest_line) << ", at "
                  << ReadableTime(collector.read_at) << " ("
                  << collector.read_at - collector.newest_line << " s later)";
    }
    std::cout << "; lines " << collector.lines << ", mail " << collector.mail << ", security "
              << collector.security << ", skipped " << collector.skipped << ", unreadable "
              << collector.unreadable << "; in flight " << collector.in_flight << "\n";
    std::string skipped;
    for (const std::string& program : collector.skipped_by_program) {
        skipped += (skipped.empty() ? "" : ", ") + VisibleText(program);
    }
    if (!skipped.empty()) {
        std::cout << "mail events: skipped lines by program: " << skipped << "\n";
    }
}

std::size_t WriteProblems(const std::string& about, const std::vector<Problem>& problems) {
    for (const Problem& problem : problems) {
        std::cout << "wrong: " << about << ": " << problem.what << ". To do: " << problem.remedy
                  << ".\n";
    }
    return problems.size();
}

void Status() {
    const std::vector<StoreReport> stores = {ExamineStore(FactsOf<AdminStore>()),
                                             ExamineStore(FactsOf<MailStore>()),
                                             ExamineStore(FactsOf<SecurityStore>())};
    const ArchiveReport archive = ExamineArchive(stores);
    const CollectorReport collector = ExamineCollector();
    WriteFiles(stores);
    std::cout << "\n";
    for (const StoreReport& store : stores) {
        WriteRotation(store);
    }
    WriteArchive(archive);
    WriteCollector(collector);
    std::cout << "\n";
    std::size_t problems = WriteProblems("archive", archive.problems) +
                           WriteProblems("mail events", collector.problems);
    for (const StoreReport& store : stores) {
        problems += WriteProblems(store.name, store.problems);
    }
    if (problems > 0) {
        std::cout << std::flush;
        throw Failure(std::to_string(problems) + (problems == 1 ? " thing is" : " things are") +
                      " wrong; what to do stands above");
    }
    std::cout << "nothing is wrong\n";
}

}  // namespace

void AddStatus(CLI::App& program) {
    CLI::App* status =
        program.add_subcommand("status", "Tell what the stores hold, and what is wrong with them");
    status->footer("Nothing is created or changed. Exit status 1 if something is wrong.");
    status->callback(Status);
}

}  // namespace serverlog::program
