#pragma once

namespace bench {

/// Lets standard output, C's and the descriptor, go to /dev/null for a scope.
class NullOutput {
 public:
    NullOutput();
    ~NullOutput();
    NullOutput(const NullOutput&) = delete;
    NullOutput& operator=(const NullOutput&) = delete;

 private:
    int saved_;
};

}  // namespace bench
