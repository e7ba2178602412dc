#include "utils/files.h"

#include <mailserver-log/exception/exception.h>
#include <unistd.h>

#include <boost/filesystem.hpp>
#include <boost/system/error_code.hpp>
#include <fstream>
#include <sstream>

#include "utils/regular_file_copy.h"
#include "utils/sync_to_disk.h"

namespace serverlog::utils {

namespace {

namespace fs = boost::filesystem;
namespace errc = boost::system::errc;
using boost::system::error_code;

constexpr int kTempPathTries = 1000;

std::string PathDetail(const std::string& path, const error_code& error) {
    return path + " " + error.message();
}

std::string PairDetail(const std::string& from, const std::string& to, const error_code& error) {
    return from + " -> " + to + " " + error.message();
}

void ThrowIfFailed(const error_code& error, FileSystemError code, const std::string& path) {
    if (error) {
        throw make_exception<ETag::FileSystem>(code, PathDetail(path, error));
    }
}

void ThrowIfFailed(const error_code& error, FileSystemError code, const std::string& from,
                   const std::string& to) {
    if (error) {
        throw make_exception<ETag::FileSystem>(code, PairDetail(from, to, error));
    }
}

void CopyFolder(const fs::path& from, const fs::path& to, error_code& error) {
    const bool created = fs::create_directory(to, from, error);
    if (!created && !error) {
        error = errc::make_error_code(errc::file_exists);
    }
}

// fs::copy as it was before Boost 1.74, which since then takes the files of a folder along and
// copies into one that exists.
void CopyOne(const fs::path& from, const fs::path& to, error_code& error) {
    const fs::file_status status = fs::symlink_status(from, error);
    if (error) {
        return;
    }
    switch (status.type()) {
        case fs::symlink_file:
            return fs::copy_symlink(from, to, error);
        case fs::directory_file:
            return CopyFolder(from, to, error);
        case fs::regular_file:
            error = CopyRegularFile(from.string(), to.string(), false);
            return;
        default:
            error = errc::make_error_code(errc::function_not_supported);
    }
}

// What stands at `to`, and its name, must be on the disk before the source may go.
error_code SyncCopy(const std::string& to) {
    error_code error;
    if (fs::symlink_status(to, error).type() != fs::symlink_file) {
        error = SyncToDisk(to);
    }
    return error ? error : SyncToDisk(fs::absolute(to).parent_path().string());
}

void RenameByCopy(const std::string& from, const std::string& to) {
    error_code error;
    CopyOne(from, to, error);
    ThrowIfFailed(error, FileSystemError::RenameCopyFail, from, to);
    error = SyncCopy(to);
    if (error) {
        error_code ignored;
        fs::remove(to, ignored);  // it would pass for younger than the source
    }
    ThrowIfFailed(error, FileSystemError::RenameCopyFail, from, to);
    fs::remove_all(from, error);
    ThrowIfFailed(error, FileSystemError::RenameDeleteFail, from, to);
}

bool HasYoungerTarget(const std::string& from, const std::string& to) {
    return Exist(to) && LastWriteTime(from) < LastWriteTime(to);
}

// Status of `path`; nothing there is an answer and no failure.
fs::file_type StatusOrNotFound(const std::string& path) {
    try {
        return Status(path);
    } catch (const Exception<ETag::FileSystem>& exception) {
        if (exception.code() != FileSystemError::NotFound) {
            throw;
        }
        return fs::file_not_found;
    }
}

}  // namespace

fs::file_type Status(const std::string& path) {
    error_code error;
    const fs::file_status status = fs::status(path, error);
    if (error == errc::no_such_file_or_directory) {
        // Not by make_exception: to look for a file that is not there is nothing to log.
        throw Exception<ETag::FileSystem>(FileSystemError::NotFound, PathDetail(path, error));
    }
    ThrowIfFailed(error, FileSystemError::StatusFail, path);
    return status.type();
}

bool Exist(const std::string& path) {
    return StatusOrNotFound(path) > fs::file_not_found;
}

bool IsDirectory(const std::string& path) {
    return StatusOrNotFound(path) == fs::directory_file;
}

bool IsRegularFile(const std::string& path) {
    return StatusOrNotFound(path) == fs::regular_file;
}

std::uint64_t FileSize(const std::string& path) {
    error_code error;
    const std::uint64_t size = fs::file_size(path, error);
    ThrowIfFailed(error, FileSystemError::FileSizeFail, path);
    return size;
}

std::time_t LastWriteTime(const std::string& path) {
    try {
        return fs::last_write_time(path);
    } catch (const fs::filesystem_error& error) {
        throw make_exception<ETag::FileSystem>(FileSystemError::NotFound,
                                               path + " " + error.what());
    }
}

bool CanAccess(const std::string& path) {
    return access(path.c_str(), R_OK) == 0;
}

bool Unlink(const std::string& path) {
    return unlink(path.c_str()) == 0;
}

void MkDir(const std::string& path) {
    error_code error;
    fs::create_directories(path, error);
    ThrowIfFailed(error, FileSystemError::MkDirFail, path);
}

void RemoveAll(const std::string& path) {
    error_code error;
    fs::remove_all(path, error);
    ThrowIfFailed(error, FileSystemError::RemoveAllFail, path);
}

void Rename(const std::string& from, const std::string& to) {
    error_code error;
    fs::rename(from, to, error);
    if (error == errc::cross_device_link) {
        return RenameByCopy(from, to);
    }
    ThrowIfFailed(error, FileSystemError::RenameFail, from, to);
}

void RenameFileWithUpdate(const std::string& from, const std::string& to) {
    if (!HasYoungerTarget(from, to)) {
        Rename(from, to);
    }
}

void Copy(const std::string& from, const std::string& to) {
    error_code error;
    CopyOne(from, to, error);
    ThrowIfFailed(error, FileSystemError::CopyFail, from, to);
}

void CopyFile(const std::string& from, const std::string& to, bool overwrite) {
    ThrowIfFailed(CopyRegularFile(from, to, overwrite), FileSystemError::CopyFileFail, from, to);
}

void CopyFileWithUpdate(const std::string& from, const std::string& to) {
    if (!HasYoungerTarget(from, to)) {
        CopyFile(from, to, true);
    }
}

std::string RealPath(const std::string& path) {
    error_code error;
    const fs::path base = fs::current_path(error);
    ThrowIfFailed(error, FileSystemError::RealPathFail, path);
    const fs::path real = fs::canonical(path, base, error);
    ThrowIfFailed(error, FileSystemError::RealPathFail, path);
    return real.string();
}

std::string UniquePath(const std::string& model) {
    error_code error;
    const fs::path path = fs::unique_path(model, error);
    ThrowIfFailed(error, FileSystemError::UniquePathFail, model);
    return path.string();
}

std::string AvailableTempFilePath(const std::string& model) {
    for (int i = 0; i < kTempPathTries; ++i) {
        std::string path = UniquePath(model);
        if (!Exist(path)) {
            return path;
        }
    }
    throw make_exception<ETag::FileSystem>(FileSystemError::NoAvailableTempPath, model);
}

std::string FileContent(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void WriteFileContent(const std::string& path, const std::string& content) {
    std::ofstream file(path, std::ios::binary);
    if (!file.good()) {
        throw make_exception<ETag::FileSystem>(FileSystemError::WriteStreamNotGood, path);
    }
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (file.fail()) {
        throw make_exception<ETag::FileSystem>(FileSystemError::WriteContentFail, path);
    }
}

std::string FileName(const std::string& path) {
    const std::string name = fs::path(path).filename().string();
    const std::size_t begin = name.find_first_not_of('/');
    return begin == std::string::npos ? name : name.substr(begin);
}

std::string FileStem(const std::string& path) {
    return fs::path(path).stem().string();
}

std::string FileExtension(const std::string& path) {
    const std::string extension = fs::path(path).extension().string();
    return extension.empty() ? extension : extension.substr(1);
}

std::string FileParentFolder(const std::string& path) {
    return fs::path(path).parent_path().string();
}

}  // namespace serverlog::utils
