#include "input/socket_source.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "process/failure.h"

namespace serverlog::program {

namespace {

sockaddr_un Address(const std::string& path) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path) {
        throw Failure("the socket's path is empty or too long: " + path + "; give one of at most " +
                      std::to_string(sizeof address.sun_path - 1) + " bytes");
    }
    std::memcpy(address.sun_path, path.data(), path.size());
    return address;
}

UniqueDescriptor DatagramSocket() {
    UniqueDescriptor descriptor(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (!descriptor) {
        throw Failure(DescribeErrno("cannot make a socket"));
    }
    return descriptor;
}

// What a program that was killed left behind.
void RemoveDeadSocket(const std::string& path, const sockaddr_un& address) {
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0 || !S_ISSOCK(status.st_mode)) {
        return;
    }
    const UniqueDescriptor probe = DatagramSocket();
    if (connect(probe.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 &&
        errno == ECONNREFUSED) {
        unlink(path.c_str());
    }
}

}  // namespace

SocketSource::SocketSource(std::string path, bool once, const StopSignal& stop)
    : path_(std::move(path)), once_(once), stop_(stop), socket_(DatagramSocket()) {
    const sockaddr_un address = Address(path_);
    RemoveDeadSocket(path_, address);
    if (bind(socket_.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        throw Failure(DescribeErrno("cannot listen on " + path_) +
                      "; end what listens there, or give another path");
    }
    if (chmod(path_.c_str(), 0666) != 0) {
        throw Failure(DescribeErrno("cannot open " + path_ + " to all users"));
    }
}

SocketSource::~SocketSource() {
    unlink(path_.c_str());
}

Arrival SocketSource::Next(std::string& message, bool wait) {
    for (;;) {
        if (Receive(message)) {
            received_ = true;
            return Arrival::kLine;
        }
        if (stop_.Requested() || (once_ && received_)) {
            return Arrival::kEnd;
        }
        if (!wait) {
            return Arrival::kNothing;
        }
        stop_.Wait(socket_.Get(), StopSignal::kForever);
    }
}

bool SocketSource::Receive(std::string& message) {
    const ssize_t size = recv(socket_.Get(), nullptr, 0, MSG_PEEK | MSG_TRUNC | MSG_DONTWAIT);
    if (size < 0) {
        if (errno == EAGAIN || errno == EINTR) {
            return false;
        }
        throw Failure(DescribeErrno("cannot read from " + path_));
    }
    message.resize(static_cast<std::size_t>(size));
    return recv(socket_.Get(), message.data(), message.size(), MSG_DONTWAIT) == size;
}

}  // namespace serverlog::program
