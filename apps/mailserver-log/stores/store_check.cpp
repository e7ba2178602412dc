#include "stores/store_check.h"

#include <mailserver-log/db/store_traits.h>
#include <merodbquery/session.h>
#include <soci/soci.h>
#include <unistd.h>

#include <cerrno>
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

void CheckWriteAccess(const std::vector<std::string>& paths) {
    if (access(db::kSpoolFolder, W_OK | X_OK) != 0) {
        throw Failure(DescribeErrno(std::string("cannot write to the folder ") + db::kSpoolFolder) +
                      "; make it, or run this as a user who may write there");
    }
    for (const std::string& path : paths) {
        if (access(path.c_str(), W_OK) != 0 && errno != ENOENT) {
            throw Failure(DescribeErrno("cannot write to " + path) +
                          "; run this as a user who may write to it");
        }
    }
}

}  // namespace serverlog::program
