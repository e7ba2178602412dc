#include <mailserver-log/exception/exception.h>

#include <cstddef>

namespace serverlog::internal {

namespace {

// Rows stand at the index of their code. The odd spellings are part of the messages.
constexpr const char* kDBMessages[] = {
    "DB create with init schema failed",
    "DB upgrade failed",
    "DB bad session",
    "DB check version get lock fail",
    "DB symlink external path fail",
};

constexpr const char* kFileSystemMessages[] = {
    "Failed to Copy",
    "Failed to CopyFile",
    "Get FileSize failed",
    "IO Failed",
    "IO NotGood",
    "MkDir failed",
    "No available temp file path",
    "No such file or directory",
    "Can't resolve real path",
    "RemoveAll failed",
    "Rename failed",
    "Rename(by copying) failed while copying",
    "Rename(by copying) failed while deleting",
    "Get FileSystem Status failed",
    "Get unique path failed",
    "Failed to write content to the file",
    "ofsteam is not good while writing content to the file",
};

constexpr const char* kLogMessages[] = {
    "Load redis information fail",
    "Load old settings info fail",
};

constexpr const char* kRotationMessages[] = {
    "Prepare rotation environment fail",
    "Rotate DB operation fail",
};

constexpr const char* kArchiveMessages[] = {
    "Prepare archive environment fail",
    "Archive cluster operation fail",
    "Archive notify fail",
    "Archive copy fail",
};

constexpr const char* kSDKMessages[] = {
    "Can not get exclusive file lock", "Get zsm group name fail", "Can not release file lock",
    "Can not list folder files",       "Invalid file lock path",  "Get api data fail",
};

template <class Code, std::size_t Count>
const char* Lookup(const char* const (&messages)[Count], Code code, const char* unknown) noexcept {
    const auto index = static_cast<std::size_t>(code);
    return index < Count ? messages[index] : unknown;
}

}  // namespace

const char* Message(DBError code) noexcept {
    return Lookup(kDBMessages, code, "Unknown DBError");
}

const char* Message(FileSystemError code) noexcept {
    return Lookup(kFileSystemMessages, code, "Unknown FileSystemError");
}

const char* Message(LogError code) noexcept {
    return Lookup(kLogMessages, code, "Unknown LogError");
}

const char* Message(RotationError code) noexcept {
    return Lookup(kRotationMessages, code, "Unknown RotationError");
}

const char* Message(ArchiveError code) noexcept {
    return Lookup(kArchiveMessages, code, "Unknown ArchiveError");
}

// "Lock" in the text is a relic of the family's first codes; readers of the log know it so.
const char* Message(SDKError code) noexcept {
    return Lookup(kSDKMessages, code, "Unknown Lock SDKError");
}

}  // namespace serverlog::internal
