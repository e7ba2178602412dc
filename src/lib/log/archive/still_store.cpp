#include "log/archive/still_store.h"

#include <mailserver-log/exception/exception.h>
#include <soci/soci.h>

#include <fstream>

#include "db/checkpoint.h"
#include "db/side_files.h"
#include "utils/strings.h"

namespace serverlog::log::archive {

namespace {

// How the files begin (https://sqlite.org/fileformat2.html). The log's last byte tells an order of
// bytes, 2 or 3.
const std::string kDatabaseHead("SQLite format 3\0", 16);
const std::string kWalHead("\x37\x7f\x06", 3);

// What SQLite says of a lock that it did not get.
constexpr char kBusy[] = "database is locked";

std::string HeadOf(const std::string& path) {
    std::string head(kDatabaseHead.size(), '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(file.gcount()));
    return head;
}

// SQLite would remove a log that it can't read, and whoever looks for what is wrong may want it.
bool LooksSound(const std::string& path) {
    const std::string wal = HeadOf(path + db::kWalSuffix);
    return HeadOf(path) == kDatabaseHead && (wal.empty() || utils::Startswith(wal, kWalHead));
}

}  // namespace

StillStore::StillStore(const std::string& path) {
    if (!LooksSound(path)) {
        return;
    }
    session_ = merodbquery::Session::SQLite(path);
    db::Checkpoint(*session_, db::CheckpointMode::Passive);  // so that the file has most by itself
    try {
        session_->GetRawSession() << "BEGIN IMMEDIATE";
    } catch (const soci::soci_error& error) {
        const std::string reason = error.get_error_message();
        if (reason.find(kBusy) != std::string::npos) {
            throw make_exception<ETag::FileSystem>(FileSystemError::CopyFileFail,
                                                   path + " " + reason);
        }
    }
}

StillStore::~StillStore() {
    if (session_) {
        session_->RawQuery("ROLLBACK");
    }
}

}  // namespace serverlog::log::archive
