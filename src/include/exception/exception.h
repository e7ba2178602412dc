#pragma once

#include <mailserver-log/export.h>
#include <mailserver-log/utils/error_line.h>

#include <cstdint>
#include <stdexcept>
#include <string>

namespace serverlog {

/// Selects a family of exceptions. The numbers are part of the interface.
enum class ETag : int { DB = 0, FileSystem = 1, Log = 2, Rotation = 3, Archive = 4, SDK = 5 };

/// Codes of ETag::DB: opening, creating and upgrading a store.
enum class DBError : std::uint32_t {
    CreateFail = 0,
    UpgradeFail = 1,
    BadSession = 2,
    CheckVersionLockFail = 3,
    SymlinkExternalPathFail = 4,
};

/// Codes of ETag::FileSystem. IOFail and IONotGood have no thrower; they hold the numbers behind
/// them.
enum class FileSystemError : std::uint32_t {
    CopyFail = 0,
    CopyFileFail = 1,
    FileSizeFail = 2,
    IOFail = 3,
    IONotGood = 4,
    MkDirFail = 5,
    NoAvailableTempPath = 6,
    NotFound = 7,
    RealPathFail = 8,
    RemoveAllFail = 9,
    RenameFail = 10,
    RenameCopyFail = 11,
    RenameDeleteFail = 12,
    StatusFail = 13,
    UniquePathFail = 14,
    WriteContentFail = 15,
    WriteStreamNotGood = 16,
};

/// Codes of ETag::Log: admin operation logging. LoadRedisInfoFail has no thrower at present.
enum class LogError : std::uint32_t { LoadRedisInfoFail = 0, LoadOldSettingsFail = 1 };

/// Codes of ETag::Rotation.
enum class RotationError : std::uint32_t { PrepareEnvFail = 0, RotateDbFail = 1 };

/// Codes of ETag::Archive. NotifyFail has no thrower at present.
enum class ArchiveError : std::uint32_t {
    PrepareEnvFail = 0,
    ClusterOperationFail = 1,
    NotifyFail = 2,
    CopyFail = 3,
};

/// Codes of ETag::SDK: file locks, groups, folder listing and web API calls.
enum class SDKError : std::uint32_t {
    ExclusiveLockFail = 0,
    GroupNameFail = 1,
    ReleaseLockFail = 2,
    ListFolderFail = 3,
    InvalidLockPath = 4,
    ApiDataFail = 5,
};

/// Gives the type of a family's codes as `value_t`.
template <ETag Tag>
struct exception_traits;

template <>
struct exception_traits<ETag::DB> {
    using value_t = DBError;
};
template <>
struct exception_traits<ETag::FileSystem> {
    using value_t = FileSystemError;
};
template <>
struct exception_traits<ETag::Log> {
    using value_t = LogError;
};
template <>
struct exception_traits<ETag::Rotation> {
    using value_t = RotationError;
};
template <>
struct exception_traits<ETag::Archive> {
    using value_t = ArchiveError;
};
template <>
struct exception_traits<ETag::SDK> {
    using value_t = SDKError;
};

/// What the library throws. what() is the detail alone; exception_str gives the whole text.
///
/// Visible across the border of the shared library, so that a caller can catch it.
template <ETag Tag>
class MAILSERVER_LOG_EXPORT Exception : public std::runtime_error {
 public:
    /// The codes of the family.
    using value_t = typename exception_traits<Tag>::value_t;

    /// Writes no error line; make_exception does.
    Exception(value_t code, const std::string& detail) : std::runtime_error(detail), code_(code) {}

    /// The code given at creation; may lie outside the named codes of the family.
    value_t code() const noexcept { return code_; }

 private:
    value_t code_;
};

namespace internal {

/// The message of a code; a family's "Unknown" text for a code outside the family. Never null,
/// static.
MAILSERVER_LOG_EXPORT const char* Message(DBError code) noexcept;
MAILSERVER_LOG_EXPORT const char* Message(FileSystemError code) noexcept;
MAILSERVER_LOG_EXPORT const char* Message(LogError code) noexcept;
MAILSERVER_LOG_EXPORT const char* Message(RotationError code) noexcept;
MAILSERVER_LOG_EXPORT const char* Message(ArchiveError code) noexcept;
MAILSERVER_LOG_EXPORT const char* Message(SDKError code) noexcept;

}  // namespace internal

/// The whole text of an exception: the code's message, then ", " and the detail unless that is
/// empty.
template <ETag Tag>
std::string exception_str(const Exception<Tag>& exception) {
    std::string text = internal::Message(exception.code());
    const char* detail = exception.what();
    if (detail == nullptr || *detail == '\0') {
        return text;
    }
    return text + ", " + detail;
}

/// Makes an exception and writes one error line with its whole text, at this one place: an
/// exception is logged when it is made, once, whether or not anyone reports it later.
///
/// @param code    one of the family's codes
/// @param detail  what the exception's what() will be; may be empty
template <ETag Tag>
Exception<Tag> make_exception(typename exception_traits<Tag>::value_t code,
                              const std::string& detail) {
    Exception<Tag> exception(code, detail);
    SERVERLOG_ERROR_LINE("%s", exception_str(exception).c_str());
    return exception;
}

/// make_exception without a detail.
template <ETag Tag>
Exception<Tag> make_exception(typename exception_traits<Tag>::value_t code) {
    return make_exception<Tag>(code, std::string());
}

}  // namespace serverlog
