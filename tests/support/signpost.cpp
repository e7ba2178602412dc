#include "support/signpost.h"

#include <unistd.h>

#include "support/check.h"

namespace test {

Signpost::Signpost() {
    Check(pipe(ends_) == 0, "pipe");
}

Signpost::~Signpost() {
    close(ends_[0]);
    close(ends_[1]);
}

void Signpost::Show() const {
    Check(write(ends_[1], "!", 1) == 1, "write");
}

void Signpost::Await() const {
    char sign = 0;
    Check(read(ends_[0], &sign, 1) == 1, "read");
}

}  // namespace test
