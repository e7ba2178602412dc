#include "null_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace bench {

NullOutput::NullOutput() : saved_(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(null, STDOUT_FILENO);
    close(null);
}

NullOutput::~NullOutput() {
    std::fflush(stdout);
    dup2(saved_, STDOUT_FILENO);
    close(saved_);
}

}  // namespace bench
