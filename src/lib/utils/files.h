#pragma once

#include <boost/filesystem/file_status.hpp>
#include <cstdint>
#include <ctime>
#include <string>

/// File helpers. All of them are free of state and may run in several threads at once. They report
/// by Exception<ETag::FileSystem>, made with make_exception and so written to the log, unless told
/// otherwise; a detail that names a path also holds the system's reason. Symbolic links are
/// followed unless told otherwise.
namespace serverlog::utils {

/// What kind of thing stands at `path`.
///
/// @throws Exception<ETag::FileSystem> with NotFound when nothing is there, which is not written
///         to the log; with StatusFail for every other reason
boost::filesystem::file_type Status(const std::string& path);

/// True when something stands at `path`.
///
/// @throws Exception<ETag::FileSystem> with StatusFail where that can't be found out: without
///         search permission, or when what should be a folder of the path is a file
bool Exist(const std::string& path);

/// True when a folder stands at `path`. Throws as Exist does.
bool IsDirectory(const std::string& path);

/// True when a regular file stands at `path`. Throws as Exist does.
bool IsRegularFile(const std::string& path);

/// Size of a regular file in bytes.
///
/// @throws Exception<ETag::FileSystem> with FileSizeFail
std::uint64_t FileSize(const std::string& path);

/// When the file was last written, in seconds since the epoch.
///
/// @throws Exception<ETag::FileSystem> with NotFound for every kind of failure; unlike that of
///         Status it is written to the log
std::time_t LastWriteTime(const std::string& path);

/// True when the process may read `path`, going by its real ids (access(2)). Never throws.
bool CanAccess(const std::string& path);

/// Removes a file or a symbolic link (unlink(2)); false when it could not. Never throws.
bool Unlink(const std::string& path);

/// Creates a folder and those above it that are missing; an existing folder is fine.
///
/// @throws Exception<ETag::FileSystem> with MkDirFail
void MkDir(const std::string& path);

/// Removes a file, a link itself, or a folder with all that it holds; nothing to remove is fine.
///
/// @throws Exception<ETag::FileSystem> with RemoveAllFail
void RemoveAll(const std::string& path);

/// Moves a file. Within a file system this is rename(2): at once, replacing an existing `to`. To
/// another file system it is Copy and RemoveAll, with the copy on the disk before anything is
/// removed: it fails on an existing `to`, and a folder arrives empty. Meant for single files.
///
/// @throws Exception<ETag::FileSystem> with RenameFail; with RenameCopyFail when the copy failed
///         and the source is still there; with RenameDeleteFail when the source could not be
///         removed behind the copy
void Rename(const std::string& from, const std::string& to);

/// Rename, but not where `to` exists and is younger than `from`. Throws as Exist, LastWriteTime and
/// Rename do.
void RenameFileWithUpdate(const std::string& from, const std::string& to);

/// Copies one file, one symbolic link (as a link), or one folder without what it holds.
///
/// @throws Exception<ETag::FileSystem> with CopyFail, also when `to` exists
void Copy(const std::string& from, const std::string& to);

/// Copies the contents and the mode of a file. Until the copy is whole it stands beside `to` as
/// "<to>.part".
///
/// @param overwrite  whether an existing `to` is replaced or is a failure
/// @throws Exception<ETag::FileSystem> with CopyFileFail
void CopyFile(const std::string& from, const std::string& to, bool overwrite);

/// CopyFile with overwriting, but not where `to` exists and is younger than `from`. Throws as
/// Exist, LastWriteTime and CopyFile do.
void CopyFileWithUpdate(const std::string& from, const std::string& to);

/// The absolute path of an existing file, with all symbolic links resolved. A relative `path`
/// starts at the current folder.
///
/// @throws Exception<ETag::FileSystem> with RealPathFail
std::string RealPath(const std::string& path);

/// `model` with a random hexadecimal digit for each '%' in it.
///
/// @throws Exception<ETag::FileSystem> with UniquePathFail
std::string UniquePath(const std::string& model);

/// A UniquePath at which nothing stands; tries up to 1000 of them. Nothing keeps the path free
/// after that.
///
/// @throws Exception<ETag::FileSystem> with NoAvailableTempPath, and as UniquePath and Exist do
std::string AvailableTempFilePath(const std::string& model);

/// All bytes of a file; empty when it can't be read. Never reports a failure.
std::string FileContent(const std::string& path);

/// Replaces what a file holds, and creates it if it is missing. Nothing is synced, and what fails
/// only when the file is closed goes unnoticed: few bytes on a full disk do.
///
/// @throws Exception<ETag::FileSystem> with WriteStreamNotGood when the file can't be opened, with
///         WriteContentFail when it does not take the content; the detail is the path alone
void WriteFileContent(const std::string& path, const std::string& content);

/// The last part of a path: "b" of "/a/b", "." of "/a/b/", "/" of "/".
std::string FileName(const std::string& path);

/// FileName without its last extension: "b.tar" of "/a/b.tar.gz".
std::string FileStem(const std::string& path);

/// The last extension without its point: "gz" of "/a/b.tar.gz"; empty when there is none.
std::string FileExtension(const std::string& path);

/// What stands before the last part of a path: "/a" of "/a/b"; empty when nothing does.
std::string FileParentFolder(const std::string& path);

}  // namespace serverlog::utils
