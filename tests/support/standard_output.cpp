#include "support/standard_output.h"

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdio>

namespace test {

void WithStandardOutput(int descriptor, const std::function<void()>& work) {
    std::fflush(stdout);
    const int former = dup(STDOUT_FILENO);
    dup2(descriptor, STDOUT_FILENO);
    work();
    std::fflush(stdout);
    dup2(former, STDOUT_FILENO);
    close(former);
}

std::string StandardOutputOf(const std::function<void()>& work) {
    const int file = memfd_create("output", 0);
    WithStandardOutput(file, work);
    lseek(file, 0, SEEK_SET);
    std::string text;
    std::array<char, 4096> buffer;
    for (ssize_t size; (size = read(file, buffer.data(), buffer.size())) > 0;) {
        text.append(buffer.data(), static_cast<std::size_t>(size));
    }
    close(file);
    return text;
}

}  // namespace test
