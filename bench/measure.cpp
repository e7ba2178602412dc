#include "measure.h"

#include <malloc.h>

#include <fstream>

namespace bench {

namespace {

// A line of /proc/self/status, see proc(5).
long StatusLine(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == name) {
            long kib = 0;
            status >> kib;
            return kib;
        }
    }
    return 0;
}

}  // namespace

long ResidentKib() {
    return StatusLine("VmRSS:");
}

long PeakKib() {
    return StatusLine("VmHWM:");
}

void ResetPeak() {
    // What earlier benchmarks gave back would otherwise count as taken already.
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";  // sets the peak back, see proc(5)
}

}  // namespace bench
