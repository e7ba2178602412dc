#include "process/syslog_echo.h"

#include <fcntl.h>
#include <mailserver-log/log/adminlog/logger/line.h>
#include <sys/mman.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <string_view>

#include "input/object_scanner.h"
#include "process/failure.h"

namespace serverlog::program {

SyslogEcho::SyslogEcho(const char* identifier)
    : identifier_(identifier),
      caught_(memfd_create("syslog", MFD_CLOEXEC)),
      former_(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0)) {
    if (!caught_ || !former_ || dup2(caught_.Get(), STDERR_FILENO) < 0) {
        throw Failure(DescribeErrno("cannot echo the lines of the system log"));
    }
    openlog(identifier_, LOG_PERROR, LOG_USER);
}

SyslogEcho::~SyslogEcho() {
    if (former_) {
        std::cerr << Restore() << std::flush;
    }
}

void SyslogEcho::Finish(std::ostream& lines, std::ostream& rest) {
    const std::string text = Restore();
    const std::string mark = std::string(identifier_) + ": ";
    const std::string start = mark + std::string(log::adminlog::line::kHead);
    std::size_t done = 0;
    for (;;) {
        const std::size_t begin = text.find(start, done);
        rest << text.substr(done, begin - done);
        if (begin == std::string::npos) {
            return;
        }
        const std::string_view tail = std::string_view(text).substr(begin + mark.size());
        const std::string_view line = tail.substr(0, ObjectScanner().Scan(tail));
        lines << line << '\n';
        done = begin + mark.size() + line.size();
        done += text.compare(done, 1, "\n") == 0 ? 1 : 0;
    }
}

std::string SyslogEcho::Restore() {
    openlog(identifier_, 0, LOG_USER);
    dup2(former_.Get(), STDERR_FILENO);
    former_.Close();
    std::string text(static_cast<std::size_t>(lseek(caught_.Get(), 0, SEEK_END)), '\0');
    text.resize(static_cast<std::size_t>(
        std::max<ssize_t>(0, pread(caught_.Get(), text.data(), text.size(), 0))));
    return text;
}

}  // namespace serverlog::program
