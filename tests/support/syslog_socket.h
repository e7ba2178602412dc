#pragma once

#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace test {

/// The far end of /dev/log: what a program writes with syslog(3) arrives here.
///
/// Only one may live in a sandbox at a time, and none while a syslog daemon runs there.
class SyslogSocket {
 public:
    /// Binds /dev/log; throws std::system_error where it can't.
    SyslogSocket();
    ~SyslogSocket();
    SyslogSocket(const SyslogSocket&) = delete;
    SyslogSocket& operator=(const SyslogSocket&) = delete;

    /// One line as it came in.
    struct Line {
        int priority;      ///< facility and severity as syslog(3) joins them
        std::string text;  ///< behind the time stamp and the program's name, line feeds kept
    };

    /// Takes all lines that have arrived and forgets them. syslog(3) returns once the line lies in
    /// the socket's buffer, so what this process wrote before is always there.
    std::vector<Line> Take();

    /// Take() reduced to the texts of one priority.
    std::vector<std::string> TakeTexts(int priority);

    /// Take() reduced to the error lines (facility mail, severity error) without "<path>:<line> ".
    std::vector<std::string> TakeErrors();

 private:
    void Receive();
    void Drain();

    int descriptor_;
    std::mutex mutex_;
    std::vector<std::string> datagrams_;
    // The kernel keeps but a few datagrams (net.unix.max_dgram_qlen), and syslog(3) waits for room.
    std::thread receiver_;
};

}  // namespace test
