#include <mailserver-log/log/archive/archiver.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "process/failure.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

using log::archive::ArchiveFlags;

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

void Archive(const std::vector<std::string>& names) {
    log::archive::Archiver archiver(FlagsOf(names));
    if (IsOff(archiver)) {
        std::cerr << "mailserver-log: archiving is off (archive_enable_schedule), so nothing was "
                     "to be done"
                  << std::endl;
    }
    const bool archived = archiver.Archive();
    std::cout << (archived ? "archived" : "failed") << std::endl;
    if (!archived) {
        throw Failure(
            "not all could be archived; no row is lost, mailserver-log status and the mail log "
            "tell why, and once that is mended the same command goes on");
    }
}

}  // namespace

void AddArchive(CLI::App& program) {
    const auto names = std::make_shared<std::vector<std::string>>();
    CLI::App* archive =
        program.add_subcommand("archive", "Hand the logs over to the archive folder");
    archive->footer("The folder and whether archiving is on are settings of the mail server.");
    std::vector<std::string> known;
    for (const Kind& kind : kKinds) {
        known.emplace_back(kind.name);
    }
    archive
        ->add_option("KIND", *names,
                     "admin, mail, security, or plain for the text files; all if none is named")
        ->check(CLI::IsMember(known));
    archive->callback([names] { Archive(*names); });
}

}  // namespace serverlog::program
