#include "support/syslog_socket.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <regex>
#include <stdexcept>
#include <system_error>

namespace test {

namespace {

constexpr char kPath[] = "/dev/log";
// More than the kernel lets one datagram hold by default.
constexpr std::size_t kLongestLine = 1 << 18;

SyslogSocket::Line Parse(const std::string& datagram) {
    // "<22>Nov 22 10:00:00 program[12]: text", or with openlog's options without the number.
    static const std::regex head("^<([0-9]+)>.{15} [^ ]*: ");
    std::smatch match;
    const std::string start = datagram.substr(0, 256);
    if (!std::regex_search(start, match, head)) {
        throw std::runtime_error("not a line of syslog(3): " + start);
    }
    return {std::stoi(match[1]), datagram.substr(static_cast<std::size_t>(match.length()))};
}

}  // namespace

SyslogSocket::SyslogSocket() : descriptor_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, kPath, sizeof kPath);
    unlink(kPath);
    const int buffer = 1 << 24;
    setsockopt(descriptor_, SOL_SOCKET, SO_RCVBUFFORCE, &buffer, sizeof buffer);
    if (bind(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        throw std::system_error(errno, std::generic_category(), kPath);
    }
    chmod(kPath, 0666);  // as a syslog daemon does: every user may write lines
    closelog();          // the C library may still be connected to the socket of an earlier test
    receiver_ = std::thread([this] { Receive(); });
}

SyslogSocket::~SyslogSocket() {
    shutdown(descriptor_, SHUT_RD);  // ends the receiver
    receiver_.join();
    close(descriptor_);
    unlink(kPath);
}

void SyslogSocket::Receive() {
    pollfd poll_entry = {descriptor_, POLLIN | POLLRDHUP, 0};
    while ((poll_entry.revents & POLLRDHUP) == 0) {
        poll(&poll_entry, 1, -1);
        const std::lock_guard<std::mutex> lock(mutex_);
        Drain();
    }
}

void SyslogSocket::Drain() {
    std::string buffer(kLongestLine, '\0');
    for (;;) {
        const ssize_t size = recv(descriptor_, buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (size <= 0) {
            return;
        }
        datagrams_.push_back(buffer.substr(0, static_cast<std::size_t>(size)));
    }
}

std::vector<SyslogSocket::Line> SyslogSocket::Take() {
    const std::lock_guard<std::mutex> lock(mutex_);
    Drain();
    std::vector<Line> lines;
    for (const std::string& datagram : datagrams_) {
        lines.push_back(Parse(datagram));
    }
    datagrams_.clear();
    return lines;
}

std::vector<std::string> SyslogSocket::TakeTexts(int priority) {
    std::vector<std::string> texts;
    for (const Line& line : Take()) {
        if (line.priority == priority) {
            texts.push_back(line.text);
        }
    }
    return texts;
}

std::vector<std::string> SyslogSocket::TakeErrors() {
    static const std::regex location("^[^ ]+:[0-9]+ ");
    std::vector<std::string> texts;
    for (const std::string& text : TakeTexts(LOG_MAIL | LOG_ERR)) {
        texts.push_back(std::regex_replace(text, location, ""));
    }
    return texts;
}

}  // namespace test
