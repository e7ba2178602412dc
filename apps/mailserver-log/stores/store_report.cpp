#include "stores/store_report.h"

#include <fcntl.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver/round_time.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <stdexcept>

#include "output/readable.h"
#include "process/unique_descriptor.h"
#include "stores/read_only_database.h"

namespace serverlog::program {

namespace {

namespace fs = std::filesystem;

std::string NameOf(const std::string& path) {
    return fs::path(path).filename().string();
}

std::uint64_t SizeOf(const std::string& path) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    return error ? 0 : size;
}

void ReadRows(const StoreFacts& facts, FileReport& report) {
    const ReadOnlyDatabase database(report.path);
    report.version = database.Number("PRAGMA user_version").value_or(0);
    const auto select = [&](const std::string& what) {
        return database.Number("SELECT " + what + " FROM " + facts.table);
    };
    const long today = getRoundTime(std::time(nullptr), CountInterval::Day);
    report.rows = select("COUNT(*)").value_or(0);
    report.oldest = select("MIN(" + facts.date_column + ")");
    report.newest = select("MAX(" + facts.date_column + ")");
    report.rows_before_today = database
                                   .Number("SELECT COUNT(*) FROM " + facts.table + " WHERE " +
                                           facts.date_column + " < " + std::to_string(today))
                                   .value_or(0);
    const std::vector<std::string> indices =
        database.Texts("SELECT name FROM sqlite_schema WHERE type = 'index' ORDER BY name");
    std::set_difference(facts.indices.begin(), facts.indices.end(), indices.begin(), indices.end(),
                        std::back_inserter(report.missing_indices));
}

FileReport ExamineFile(const StoreFacts& facts, const std::string& path) {
    FileReport report;
    report.path = path;
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
        return report;
    }
    report.exists = true;
    report.size = static_cast<std::uint64_t>(status.st_size) + SizeOf(path + "-wal");
    report.written = status.st_mtime;
    try {
        if (access(path.c_str(), R_OK) != 0) {
            throw std::runtime_error("you may not read it");
        }
        ReadRows(facts, report);
    } catch (const std::runtime_error& error) {
        report.unreadable = error.what();
    }
    return report;
}

bool IsHeld(const std::string& lock_file) {
    const UniqueDescriptor file(open(lock_file.c_str(), O_RDONLY | O_CLOEXEC));
    return file.Get() >= 0 && flock(file.Get(), LOCK_SH | LOCK_NB) != 0;
}

void CheckFile(const StoreFacts& facts, const FileReport& file, std::vector<Problem>& problems) {
    const std::string name = NameOf(file.path);
    if (!file.exists) {
        return;
    }
    if (!file.unreadable.empty()) {
        problems.push_back(
            {name + " cannot be read: " + file.unreadable,
             "if you may not, become root; if it is locked, try again; if it is broken, move it "
             "away and keep it, a new one is made, and its rows may be in the archive"});
        return;
    }
    if (file.version < facts.version) {
        problems.push_back({name + " is of version " + std::to_string(file.version),
                            "run mailserver-log upgrade " + facts.name});
    }
    if (file.version > facts.version) {
        problems.push_back({name + " is of version " + std::to_string(file.version) +
                                ", which this release does not know",
                            "install the newer release again"});
    }
}

void CheckIndices(const StoreFacts& facts, const FileReport& file, std::vector<Problem>& problems) {
    if (!file.exists || file.version != facts.version || file.missing_indices.empty()) {
        return;
    }
    problems.push_back({NameOf(file.path) + " lacks " +
                            std::to_string(file.missing_indices.size()) + " of its indices, " +
                            file.missing_indices.front() + " first: a rotation broke off",
                        "run mailserver-log rotate " + facts.name});
}

void CheckPlace(const StoreFacts& facts, std::vector<Problem>& problems) {
    std::error_code error;
    const std::string real = fs::canonical(facts.current, error).string();
    if (!error && real.rfind("/volume", 0) != 0) {
        problems.push_back(
            {NameOf(facts.current) + " lies in " + real +
                 ", not on a volume: it "
                 "is never rotated",
             std::string("let ") + db::kSpoolFolder + " be a link to a folder on a volume"});
    }
}

void CheckWorkFile(const StoreFacts& facts, std::vector<Problem>& problems) {
    if (fs::exists(facts.work)) {
        problems.push_back({NameOf(facts.work) + " (" + ReadableSize(SizeOf(facts.work)) +
                                ") was left by a rotation that broke off",
                            "run mailserver-log rotate " + facts.name +
                                ", which removes it and begins anew; if that fails, the mail log "
                                "tells why"});
    }
}

// Rotation copies the long-term file, and VACUUM the copy.
void CheckRoom(const StoreReport& report, std::vector<Problem>& problems) {
    const std::uint64_t needed = 2 * report.long_term.size + report.current.size;
    std::error_code error;
    const fs::space_info space = fs::space(db::kSpoolFolder, error);
    if (!error && space.available < needed) {
        problems.push_back({"to rotate " + report.name + " takes about " + ReadableSize(needed) +
                                ", and " + ReadableSize(space.available) + " is free in " +
                                db::kSpoolFolder,
                            "make room there"});
    }
}

}  // namespace

StoreReport ExamineStore(const StoreFacts& facts) {
    StoreReport report;
    report.name = facts.name;
    // Before the files: what is found while it is held need not be wrong.
    report.operation_under_way = IsHeld(facts.operation_lock);
    report.current = ExamineFile(facts, facts.current);
    report.long_term = ExamineFile(facts, facts.long_term);
    report.archive = ExamineFile(facts, facts.archive);
    for (const FileReport* file : {&report.current, &report.long_term, &report.archive}) {
        CheckFile(facts, *file, report.problems);
    }
    CheckPlace(facts, report.problems);
    CheckRoom(report, report.problems);
    if (!report.operation_under_way) {
        // That of the archive lacks them until it is archived.
        CheckIndices(facts, report.current, report.problems);
        CheckIndices(facts, report.long_term, report.problems);
        CheckWorkFile(facts, report.problems);
    }
    return report;
}

}  // namespace serverlog::program
