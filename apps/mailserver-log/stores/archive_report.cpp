#include "stores/archive_report.h"

#include <mailserver-log/db/store_traits.h>
#include <mailserver/file.h>
#include <mailserver/mail_conf.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace serverlog::program {

namespace {

namespace fs = std::filesystem;

constexpr char kPlainLogPrefix[] = "aggr_maillog-";

bool ReadSettings(ArchiveReport& report) {
    std::string enabled;
    std::string last;
    if (mailConfGet("archive_enable_schedule", enabled) < 0 ||
        mailConfGet("archive_destination", report.destination) < 0 ||
        mailConfGet("archive_last_archive_time", last) < 0) {
        return false;
    }
    report.enabled = enabled == "yes";
    report.last_plain_log = std::strtol(last.c_str(), nullptr, 10);
    return true;
}

std::size_t CountPlainLogs(std::time_t since) {
    std::size_t count = 0;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(db::kSpoolFolder, error)) {
        const bool is_log = entry.path().filename().string().rfind(kPlainLogPrefix, 0) == 0;
        count += is_log && pcsGetFileMtime(entry.path()) > since ? 1 : 0;
    }
    return count;
}

void CheckDestination(ArchiveReport& report) {
    if (!pcsDirectoryExist(report.destination)) {
        report.problems.push_back(
            {"the archive folder " +
                 (report.destination.empty() ? "is not set" : report.destination + " is gone"),
             "bring it back or choose another one; otherwise the next archive run turns archiving "
             "off"});
    } else if (access(report.destination.c_str(), W_OK | X_OK) != 0) {
        report.problems.push_back({"you may not write to the archive folder " + report.destination,
                                   "give the right to it, or archive as root"});
    }
}

}  // namespace

ArchiveReport ExamineArchive(const std::vector<StoreReport>& stores) {
    ArchiveReport report;
    for (const StoreReport& store : stores) {
        report.rows += store.archive.rows;
    }
    if (!ReadSettings(report)) {
        report.problems.push_back(
            {"the settings cannot be read: nothing is archived",
             "mend /var/packages/PostCube-Server/etc/mailserver.conf: each line is key=\"value\", "
             "and the mail log names the bad one"});
        return report;
    }
    report.plain_logs = CountPlainLogs(report.last_plain_log);
    if (report.enabled) {
        CheckDestination(report);
    } else if (report.rows > 0) {
        report.problems.push_back(
            {"archiving was turned off, and rows wait for it: " + std::to_string(report.rows),
             "turn it on again (archive_enable_schedule) and run mailserver-log archive"});
    }
    return report;
}

}  // namespace serverlog::program
