#include "stores/store_check.h"

#include <merodbquery/session.h>
#include <soci/soci.h>

#include <cstdint>
#include <filesystem>

#include "process/failure.h"

namespace serverlog::program {

namespace {

// Several times what the tables and their indexes take in all their versions.
constexpr std::uintmax_t kRoomForTables = 1 << 20;

int ReadVersion(const std::string& path, std::chrono::milliseconds patience) {
    merodbquery::Session session = merodbquery::Session::SQLite(path);
    session.RawQuery("PRAGMA busy_timeout = " + std::to_string(patience.count()));
    int version = 0;
    session.GetRawSession() << "PRAGMA user_version", soci::into(version);
    return version;
}

}  // namespace

void CheckStore(const std::string& path, std::chrono::milliseconds patience) {
    if (std::filesystem::exists(path) && ReadVersion(path, patience) > 0) {
        return;
    }
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    std::error_code error;
    const std::filesystem::space_info space = std::filesystem::space(folder, error);
    if (!error && space.available < kRoomForTables) {
        throw Failure("the disk of " + folder.string() + " has too little room for a new store");
    }
}

}  // namespace serverlog::program
