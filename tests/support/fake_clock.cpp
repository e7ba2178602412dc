#include "support/fake_clock.h"

#include <glob.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

#include "support/text_file.h"

namespace test {

namespace {

constexpr char kClockFile[] = "/tmp/fake-clock";
constexpr char kPreload[] = "LD_PRELOAD";

// Debian keeps it in a folder of the machine's architecture.
std::string LibraryPath() {
    glob_t found = {};
    const int result = glob("/usr/lib/*/faketime/libfaketime.so.1", 0, nullptr, &found);
    const std::string path = result == 0 ? found.gl_pathv[0] : "";
    globfree(&found);
    if (path.empty()) {
        throw std::runtime_error("libfaketime is not installed; scripts/setup does it");
    }
    return path;
}

// The sanitizers' libraries insist on being loaded before all others.
std::string SanitizerLibraries() {
    std::ifstream maps("/proc/self/maps");
    std::string libraries;
    for (std::string line; std::getline(maps, line);) {
        const std::size_t path = line.find('/');
        const bool sanitizer = line.find("/libasan.so") != std::string::npos ||
                               line.find("/libtsan.so") != std::string::npos;
        if (sanitizer && libraries.find(line.substr(path)) == std::string::npos) {
            libraries += line.substr(path) + " ";
        }
    }
    return libraries;
}

}  // namespace

void FakeClock::Install(char** arguments) {
    if (std::getenv("FAKETIME_TIMESTAMP_FILE") != nullptr) {
        unsetenv(kPreload);  // what the test starts has the real clock
        return;
    }
    Set(0);
    setenv(kPreload, Preload().c_str(), 1);
    setenv("FAKETIME_TIMESTAMP_FILE", kClockFile, 1);
    setenv("FAKETIME_FMT", "%s", 1);
    setenv("FAKETIME_NO_CACHE", "1", 1);
    setenv("FAKETIME_DONT_FAKE_MONOTONIC", "1", 1);
    setenv("NO_FAKE_STAT", "1", 1);
    execv("/proc/self/exe", arguments);
    throw std::runtime_error("cannot start the test again");
}

std::string FakeClock::Preload() {
    return SanitizerLibraries() + LibraryPath();
}

void FakeClock::Set(long time) {
    WriteTextFile(kClockFile, std::to_string(time) + "\n");
}

}  // namespace test
