#include "param_check.h"

#include <mailserver-log/db/store_traits.h>
#include <mailserver/mail_conf.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

namespace serverlog::endpoint {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestLanguage = 16;

bool IsLanguage(const std::string& text) {
    return !text.empty() && text.size() <= kLongestLanguage &&
           std::all_of(text.begin(), text.end(), [](unsigned char letter) {
               return std::isalnum(letter) != 0 || letter == '_' || letter == '-';
           });
}

// `file` is resolved already.
bool LiesIn(const fs::path& file, const fs::path& folder) {
    std::error_code error;
    const fs::path real = fs::canonical(folder, error);
    if (error) {
        return false;
    }
    const auto [end_of_folder, rest] =
        std::mismatch(real.begin(), real.end(), file.begin(), file.end());
    return end_of_folder == real.end() && rest != file.end();
}

// The file itself need not exist: a store that has not been made yet may be named.
bool MayBeRead(const fs::path& path) {
    if (!path.is_absolute() || !path.has_filename()) {
        return false;
    }
    std::error_code error;
    const fs::path file = fs::weakly_canonical(path, error);
    const fs::file_status status = error ? fs::file_status() : fs::status(file, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        return false;
    }
    if (fs::is_symlink(fs::symlink_status(file, error))) {
        return false;  // one that leads nowhere
    }
    std::string archive;
    return LiesIn(file, fs::path(db::kSpoolFolder).parent_path()) ||
           (mailConfGet("archive_destination", archive) == 0 && fs::path(archive).is_absolute() &&
            LiesIn(file, archive));
}

}  // namespace

bool MayHaveValue(const std::string& key, const Json::Value& value) {
    if (key == "db_path") {
        // A NUL would hide the rest of the path from those who open it.
        return value.isString() && value.asString().find('\0') == std::string::npos &&
               MayBeRead(value.asString());
    }
    if (key == "lang") {
        return value.isString() && IsLanguage(value.asString());
    }
    return true;
}

}  // namespace serverlog::endpoint
