#include "support/sqlite_file.h"

#include <sqlite3.h>

#include <memory>
#include <stdexcept>
#include <utility>

namespace test {
namespace {

int KeepRow(void* rows, int count, char** texts, char** /*names*/) {
    std::string row;
    for (int i = 0; i < count; ++i) {
        row += (i == 0 ? "" : "|") + std::string(texts[i] ? texts[i] : "NULL");
    }
    static_cast<std::vector<std::string>*>(rows)->push_back(std::move(row));
    return 0;
}

}  // namespace

std::vector<std::string> RunOnFile(const std::string& path, const std::string& sql) {
    sqlite3* handle = nullptr;
    sqlite3_open(path.c_str(), &handle);
    sqlite3_busy_timeout(handle, 60'000);  // the program under test may read at this moment
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> closer(handle, sqlite3_close);
    std::vector<std::string> rows;
    if (sqlite3_exec(handle, sql.c_str(), KeepRow, &rows, nullptr) != SQLITE_OK) {
        throw std::runtime_error(path + ": " + sqlite3_errmsg(handle));
    }
    return rows;
}

}  // namespace test
