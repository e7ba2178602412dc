#include "stores/read_only_database.h"

#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "stores/statement.h"

namespace serverlog::program {

namespace {

constexpr int kPatienceMilliseconds = 5000;

// The file format's version for reading, https://sqlite.org/fileformat2.html: 2 is WAL mode.
bool IsInWalMode(const std::string& path) {
    constexpr std::streamoff kVersionOffset = 19;
    std::ifstream file(path, std::ios::binary);
    file.seekg(kVersionOffset);
    return file.get() == 2;
}

// A path as it stands in a URI, https://www.sqlite.org/uri.html.
std::string Escaped(const std::string& path) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string escaped;
    for (const char letter : path) {
        if (letter != '%' && letter != '?' && letter != '#') {
            escaped += letter;
            continue;
        }
        const auto byte = static_cast<unsigned char>(letter);
        escaped += {'%', kDigits[byte >> 4U], kDigits[byte & 0xfU]};
    }
    return escaped;
}

// SQLite makes the files of the log when they are missing, unless the file is said not to change.
std::string Address(const std::string& path) {
    const bool has_log =
        std::filesystem::exists(path + "-wal") && std::filesystem::exists(path + "-shm");
    return "file:" + Escaped(path) + (IsInWalMode(path) && !has_log ? "?immutable=1" : "?mode=ro");
}

}  // namespace

void ReadOnlyDatabase::Close::operator()(sqlite3* handle) const {
    sqlite3_close(handle);
}

ReadOnlyDatabase::ReadOnlyDatabase(const std::string& path) {
    sqlite3* handle = nullptr;
    const int result = sqlite3_open_v2(Address(path).c_str(), &handle,
                                       SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    handle_.reset(handle);
    if (result != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(handle));
    }
    sqlite3_busy_timeout(handle, kPatienceMilliseconds);
}

std::optional<long long> ReadOnlyDatabase::Number(const std::string& query) const {
    Statement rows(handle_.get(), query);
    if (!rows.Next() || rows.IsNull(0)) {
        return std::nullopt;
    }
    return rows.Number(0);
}

std::vector<std::string> ReadOnlyDatabase::Texts(const std::string& query) const {
    Statement rows(handle_.get(), query);
    std::vector<std::string> texts;
    while (rows.Next()) {
        texts.push_back(rows.Text(0));
    }
    return texts;
}

}  // namespace serverlog::program
