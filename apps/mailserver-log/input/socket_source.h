#pragma once

#include <string>

#include "input/message_source.h"
#include "process/stop_signal.h"
#include "process/unique_descriptor.h"

namespace serverlog::program {

/// Messages from a datagram socket such as /dev/log, which syslog(3) writes to: one datagram, one
/// message.
class SocketSource : public MessageSource {
 public:
    /// Makes the socket, open to all users. A socket that nobody listens on any more is replaced.
    ///
    /// @param path  in place until this object ends
    /// @param once  end as soon as nothing waits, once a first message has come
    /// @param stop  must outlive this object
    ///
    /// Throws Failure if the socket can't be made.
    SocketSource(std::string path, bool once, const StopSignal& stop);
    ~SocketSource() override;
    SocketSource(const SocketSource&) = delete;
    SocketSource& operator=(const SocketSource&) = delete;

    /// Once a stop is requested it gives what waits already and then kEnd.
    Arrival Next(std::string& message, bool wait) override;

 private:
    bool Receive(std::string& message);

    std::string path_;
    bool once_;
    const StopSignal& stop_;
    UniqueDescriptor socket_;
    bool received_ = false;
};

}  // namespace serverlog::program
