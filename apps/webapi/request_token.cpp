#include "request_token.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "process/unique_descriptor.h"

namespace serverlog::endpoint {

namespace {

// Empty again after each start of the machine, and no folder that others may write to.
constexpr char kFolder[] = "/run/mailserver-log";
constexpr std::size_t kRandomBytes = 32;
constexpr std::size_t kLength = 2 * kRandomBytes;

[[noreturn]] void Fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::string NewToken() {
    std::array<unsigned char, kRandomBytes> bytes = {};
    if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        Fail("getrandom");
    }
    constexpr char kDigits[] = "0123456789abcdef";
    std::string token;
    for (const unsigned char byte : bytes) {
        token += {kDigits[byte >> 4U], kDigits[byte & 0xfU]};
    }
    return token;
}

// Empty if there is none.
std::string Read(const std::string& path) {
    const program::UniqueDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (!file) {
        if (errno == ENOENT) {
            return "";
        }
        Fail(path);
    }
    std::string token(kLength, '\0');
    if (read(file.Get(), token.data(), token.size()) != static_cast<ssize_t>(token.size())) {
        errno = EBADMSG;
        Fail(path);
    }
    return token;
}

// The file appears with its whole content or not at all, and never in the place of another one:
// several requests may do this at once.
void Make(const std::string& path) {
    if (mkdir(kFolder, 0700) != 0 && errno != EEXIST) {
        Fail(kFolder);
    }
    const program::UniqueDescriptor file(
        open(kFolder, O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR));
    const std::string token = NewToken();
    if (!file || write(file.Get(), token.data(), token.size()) != kLength) {
        Fail(kFolder);
    }
    const std::string name = "/proc/self/fd/" + std::to_string(file.Get());
    if (linkat(AT_FDCWD, name.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) != 0 &&
        errno != EEXIST) {
        Fail(path);
    }
}

}  // namespace

RequestToken::RequestToken(unsigned int uid) {
    const std::string path = std::string(kFolder) + "/token-" + std::to_string(uid);
    text_ = Read(path);
    if (text_.empty()) {
        Make(path);
        text_ = Read(path);
    }
}

bool RequestToken::Equals(const std::string& text) const {
    unsigned difference = text.size() == text_.size() ? 0 : 1;
    for (std::size_t i = 0; i < text_.size(); ++i) {
        const char letter = i < text.size() ? text[i] : '\0';
        difference |= static_cast<unsigned char>(letter) ^ static_cast<unsigned char>(text_[i]);
    }
    return difference == 0 && text_.size() == kLength;
}

}  // namespace serverlog::endpoint
