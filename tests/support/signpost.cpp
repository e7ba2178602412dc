#include "support/signpost.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace test {

namespace {

void Check(bool done) {
    if (!done) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
}

}  // namespace

Signpost::Signpost() {
    Check(pipe(ends_) == 0);
}

Signpost::~Signpost() {
    close(ends_[0]);
    close(ends_[1]);
}

void Signpost::Show() const {
    Check(write(ends_[1], "!", 1) == 1);
}

void Signpost::Await() const {
    char sign = 0;
    Check(read(ends_[0], &sign, 1) == 1);
}

}  // namespace test
