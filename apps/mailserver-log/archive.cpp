#include <mailserver-log/log/archive/archiver.h>

#include <algorithm>
#include <ctime>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "process/failure.h"
#include "schedule/archive_schedule.h"
#include "schedule/archive_stamp.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

using log::archive::ArchiveFlags;

struct ArchiveOptions {
    std::vector<std::string> kinds;
    bool if_due = false;
};

struct Kind {
    const char* name;
    ArchiveFlags flag;
};

constexpr Kind kKinds[] = {
    {"admin", log::archive::kArchiveAdminLog},
    {"mail", log::archive::kArchiveMailLog},
    {"security", log::archive::kArchiveSecurityLog},
    {"plain", log::archive::kArchivePlainMailLogs},
};

ArchiveFlags FlagsOf(const std::vector<std::string>& names) {
    ArchiveFlags flags = 0;
    for (const Kind& kind : kKinds) {
        if (names.empty() || std::find(names.begin(), names.end(), kind.name) != names.end()) {
            flags |= kind.flag;
        }
    }
    return flags;
}

bool IsOff(log::archive::Archiver& archiver) {
    try {
        return !archiver.IsEnabled();
    } catch (...) {
        return false;  // Archive fails by the same
    }
}

void Archive(log::archive::Archiver& archiver) {
    const bool archived = archiver.Archive();
    std::cout << (archived ? "archived" : "failed") << std::endl;
    if (!archived) {
        throw Failure(
            "not all could be archived; no row is lost, mailserver-log status and the mail log "
            "tell why, and once that is mended the same command goes on");
    }
}

void ArchiveNow(log::archive::Archiver& archiver) {
    if (IsOff(archiver)) {
        std::cerr << "mailserver-log: archiving is off (archive_enable_schedule), so nothing was "
                     "to be done"
                  << std::endl;
    }
    Archive(archiver);
}

// A time that was missed, as the machine was off or the archive failed, is made up for.
bool IsDue(log::archive::Archiver& archiver, std::time_t now) {
    const std::optional<std::time_t> last = archive_stamp::Read();
    // Who turns archiving on waits for the first time to come; so does a clock that was set back.
    if (!last || *last > now || IsOff(archiver)) {
        archive_stamp::Write(now);
        return false;
    }
    return LatestArchiveTime(ReadArchiveSchedule(), now) > *last;
}

void ArchiveIfDue(log::archive::Archiver& archiver) {
    const std::time_t now = std::time(nullptr);
    if (!IsDue(archiver, now)) {
        std::cout << "not due" << std::endl;
        return;
    }
    Archive(archiver);
    archive_stamp::Write(now);
}

void RunArchive(const ArchiveOptions& options) {
    log::archive::Archiver archiver(FlagsOf(options.kinds));
    if (options.if_due) {
        ArchiveIfDue(archiver);
    } else {
        ArchiveNow(archiver);
    }
}

}  // namespace

void AddArchive(CLI::App& program) {
    const auto options = std::make_shared<ArchiveOptions>();
    CLI::App* archive =
        program.add_subcommand("archive", "Hand the logs over to the archive folder");
    archive->footer("The folder and whether archiving is on are settings of the mail server.");
    std::vector<std::string> known;
    for (const Kind& kind : kKinds) {
        known.emplace_back(kind.name);
    }
    archive
        ->add_option("KIND", options->kinds,
                     "admin, mail, security, or plain for the text files; all if none is named")
        ->check(CLI::IsMember(known));
    archive->add_flag(
        "--if-due", options->if_due,
        "Only if the time has come, by the settings archive_weekday (such as "
        "1,2,3,4,5; 0 is Sunday), archive_hour and archive_minute [each day at 4:00]");
    archive->callback([options] { RunArchive(*options); });
}

}  // namespace serverlog::program
