#include "mailserver/mail_conf.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sstream>
#include <vector>

#include "common/file_descriptor.h"
#include "common/file_text.h"
#include "common/folders.h"
#include "common/key_value_line.h"
#include "mailserver/maillog.h"

namespace {

using platform::FileDescriptor;
using platform::KeyValueLine;
using platform::ReadOutcome;

constexpr char kFolder[] = "/var/packages/PostCube-Server/etc";
constexpr char kPath[] = "/var/packages/PostCube-Server/etc/mailserver.conf";
constexpr char kNewPath[] = "/var/packages/PostCube-Server/etc/mailserver.conf.new";

int Fail(const char* step) {
    maillog(LOG_WARNING, "%s %s: %s", step, kPath, std::strerror(errno));
    return -1;
}

// The lock lies on the folder, since the file itself is replaced by each change.
FileDescriptor LockFolder(int operation) {
    FileDescriptor folder(open(kFolder, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    while (folder && flock(folder.Get(), operation) != 0) {
        if (errno != EINTR) {
            return FileDescriptor();
        }
    }
    return folder;
}

std::vector<std::string> SplitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

// Reads the file, none at all for a missing one. False, with a line in the log, when that fails or
// a line is no setting.
bool ReadLines(std::vector<std::string>& lines) {
    std::string text;
    if (platform::ReadText(kPath, text) == ReadOutcome::Failed) {
        Fail("read");
        return false;
    }
    lines = SplitLines(text);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        if (platform::ParseKeyValueLine(lines[index]).kind == KeyValueLine::Kind::Other) {
            maillog(LOG_WARNING, "%s:%zu is no setting", kPath, index + 1);
            return false;
        }
    }
    return true;
}

bool IsLineOf(const std::string& key, const std::string& line) {
    const KeyValueLine parsed = platform::ParseKeyValueLine(line);
    return parsed.kind == KeyValueLine::Kind::KeyValue && parsed.key == key;
}

void ReplaceLine(std::vector<std::string>& lines, const std::string& key,
                 const std::string& value) {
    const auto is_old = [&](const std::string& line) { return IsLineOf(key, line); };
    const auto place = std::find_if(lines.begin(), lines.end(), is_old) - lines.begin();
    lines.erase(std::remove_if(lines.begin(), lines.end(), is_old), lines.end());
    lines.insert(lines.begin() + place, platform::FormatKeyValueLine(key, value));
}

// Gives the new file the owner and the mode of the one that it will replace, if there is one.
bool TakeOver(int descriptor) {
    struct stat old_status = {};
    struct stat new_status = {};
    if (stat(kPath, &old_status) != 0) {
        return errno == ENOENT && fchmod(descriptor, 0644) == 0;
    }
    if (fstat(descriptor, &new_status) != 0) {
        return false;
    }
    const bool same_owner =
        old_status.st_uid == new_status.st_uid && old_status.st_gid == new_status.st_gid;
    if (!same_owner && fchown(descriptor, old_status.st_uid, old_status.st_gid) != 0) {
        return false;
    }
    return fchmod(descriptor, old_status.st_mode & 07777) == 0;
}

bool WriteNewFile(const std::vector<std::string>& lines) {
    // A file of this name is what a writer that was killed has left behind.
    unlink(kNewPath);
    const FileDescriptor file(open(kNewPath, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file) {
        return false;
    }
    std::string text;
    for (const std::string& line : lines) {
        text += line + '\n';
    }
    return platform::WriteText(file.Get(), text) && TakeOver(file.Get()) && fsync(file.Get()) == 0;
}

bool ReplaceFile(int folder, const std::vector<std::string>& lines) {
    if (!WriteNewFile(lines) || std::rename(kNewPath, kPath) != 0) {
        const int error = errno;
        unlink(kNewPath);
        errno = error;
        return false;
    }
    return fsync(folder) == 0;
}

bool IsKey(const std::string& key) {
    constexpr char kAllowed[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-.";
    return !key.empty() && key.find_first_not_of(kAllowed) == std::string::npos;
}

bool IsOneLine(const std::string& value) {
    return value.find_first_of(std::string("\n\r\0", 3)) == std::string::npos;
}

}  // namespace

int mailConfGet(const std::string& key, std::string& value) {
    const FileDescriptor folder = LockFolder(LOCK_SH);
    if (!folder && errno != ENOENT) {
        return Fail("lock the folder of");
    }
    std::vector<std::string> lines;
    if (folder && !ReadLines(lines)) {
        return -1;
    }
    const auto line = std::find_if(lines.rbegin(), lines.rend(),
                                   [&](const std::string& each) { return IsLineOf(key, each); });
    value = line == lines.rend() ? "" : platform::ParseKeyValueLine(*line).value;
    return 0;
}

int mailConfSet(const std::string& key, const std::string& value, bool announce, int flags) {
    if (!IsKey(key) || !IsOneLine(value) || flags != 0) {
        errno = EINVAL;
        return Fail("write a setting to");
    }
    platform::MakeParentFolders(kPath);
    const FileDescriptor folder = LockFolder(LOCK_EX);
    if (!folder) {
        return Fail("lock the folder of");
    }
    std::vector<std::string> lines;
    if (!ReadLines(lines)) {
        return -1;
    }
    ReplaceLine(lines, key, value);
    if (!ReplaceFile(folder.Get(), lines)) {
        return Fail("write");
    }
    if (announce) {
        // Without the value: it may be a secret.
        maillog(LOG_NOTICE, "setting %s was changed", key.c_str());
    }
    return 0;
}
