#include "scgi_request.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

namespace serverlog::endpoint {

namespace {

// Four times what the shipped configuration of the web server lets through.
constexpr std::size_t kMostBytes = 128U << 10;

[[noreturn]] void Fail(const std::string& reason) {
    throw std::runtime_error("an SCGI request " + reason);
}

std::string ReadExactly(int connection, std::size_t size) {
    std::string text(size, '\0');
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = read(connection, text.data() + done, size - done);
        if (count < 0 && errno != EINTR) {
            Fail(std::string("cannot be read: ") + std::strerror(errno));
        }
        if (count == 0) {
            Fail("ends before its body");
        }
        done += count < 0 ? 0 : static_cast<std::size_t>(count);
    }
    return text;
}

// The head of a netstring: digits and a colon. One byte at a time, since what follows all the
// variables belongs to whoever reads the body.
std::size_t ReadLength(int connection) {
    std::size_t length = 0;
    for (bool first = true;; first = false) {
        const char byte = ReadExactly(connection, 1)[0];
        if (byte == ':' && !first) {
            return length;
        }
        if (byte < '0' || byte > '9') {
            Fail("does not begin with the length of its variables");
        }
        length = length * 10 + static_cast<std::size_t>(byte - '0');
        if (length > kMostBytes) {
            Fail("has more than 128 KiB of variables");
        }
    }
}

// The text up to the next NUL, taken off `rest`.
std::string TakeText(std::string_view& rest) {
    const std::size_t end = rest.find('\0');
    if (end == std::string_view::npos) {
        Fail("has a variable without an end");
    }
    std::string text(rest.substr(0, end));
    rest.remove_prefix(end + 1);
    return text;
}

}  // namespace

MERO::APIRequest::Texts ReadScgiVariables(int connection) {
    const std::size_t length = ReadLength(connection);
    const std::string text = ReadExactly(connection, length + 1);
    if (text.back() != ',') {
        Fail("does not end its variables with a comma");
    }
    MERO::APIRequest::Texts variables;
    for (std::string_view rest(text.data(), length); !rest.empty();) {
        const std::string name = TakeText(rest);
        variables[name] = TakeText(rest);
    }
    return variables;
}

}  // namespace serverlog::endpoint
