#include <benchmark/benchmark.h>
#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/log/adminlog/logger/logger.h>
#include <mero/api_request.h>
#include <mero/api_response.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>
#include <thread>

#include "measure.h"

namespace bench {
namespace {

constexpr char kSyslogPath[] = "/dev/log";

/// Takes what is written to the system log, and drops it.
class SyslogSink {
 public:
    SyslogSink() : descriptor_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, kSyslogPath);
        unlink(kSyslogPath);
        if (bind(descriptor_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
            throw std::runtime_error("cannot listen on /dev/log");
        }
        reader_ = std::thread([this] {
            char line[4096];
            while (recv(descriptor_, line, sizeof line, 0) > 0) {
            }
        });
    }
    ~SyslogSink() {
        shutdown(descriptor_, SHUT_RDWR);
        reader_.join();
        close(descriptor_);
        closelog();
    }
    SyslogSink(const SyslogSink&) = delete;
    SyslogSink& operator=(const SyslogSink&) = delete;

 private:
    int descriptor_;
    std::thread reader_;
};

void OpenStore() {
    using DB = serverlog::db::AdminLogDB;
    serverlog::db::Provider(serverlog::db::StoreTraits<DB>::kPath).Get<DB>(false);
}

void LogRaw(benchmark::State& state) {
    const SyslogSink sink;
    OpenStore();
    Measure(state, [] {
        OpenStore();
        syslog(LOG_LOCAL0 | LOG_INFO, "%s", "a line that is about as long as one of ours");
    });
}
BENCHMARK(LogRaw)->Name("logger/floor")->Unit(benchmark::kMicrosecond);

void LogOurs(benchmark::State& state) {
    const SyslogSink sink;
    OpenStore();
    MERO::APIRequest request("admin", 1024, "127.0.0.1", Json::objectValue);
    Measure(state, [&] {
        MERO::APIResponse response;
        serverlog::log::adminlog::Logger logger("Webapi_Queue_DeleteAll", Json::objectValue);
        logger.PreLog();
        logger.Log(&request, &response);
    });
}
BENCHMARK(LogOurs)->Name("logger/ours")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace bench
