#include "mail_events/collector_report.h"

#include <filesystem>
#include <stdexcept>

#include "mail_events/state_file.h"
#include "stores/read_only_database.h"

namespace serverlog::program {

namespace {

void Read(CollectorReport& report) {
    const ReadOnlyDatabase database(state_file::kPath);
    const long long version = database.Number("PRAGMA user_version").value_or(0);
    if (version != state_file::kVersion) {
        throw std::runtime_error("it is of version " + std::to_string(version) +
                                 ", which this release does not know");
    }
    const auto total = [&database](const std::string& name) {
        return database.Number("SELECT value FROM total WHERE name = '" + name + "'").value_or(0);
    };
    report.lines = total("lines");
    report.mail = total("mail");
    report.security = total("security");
    report.skipped = total("skipped");
    report.unreadable = total("unreadable");
    report.newest_line = total("newest_line");
    report.read_at = total("read_at");
    report.in_flight = database.Number("SELECT COUNT(*) FROM mail").value_or(0);
    report.skipped_by_program = database.Texts(
        "SELECT program || ' ' || lines FROM skipped ORDER BY lines DESC, program LIMIT 10");
}

}  // namespace

CollectorReport ExamineCollector() {
    CollectorReport report;
    if (!std::filesystem::exists(state_file::kPath)) {
        return report;
    }
    try {
        Read(report);
    } catch (const std::runtime_error& error) {
        report.problems.push_back(
            {state_file::kPath + " cannot be read: " + error.what(),
             "if you may not, become root; if it is locked, try again; if it is broken, move it "
             "away: a new one is made, and only what is known of mails in flight is lost"});
    }
    return report;
}

}  // namespace serverlog::program
