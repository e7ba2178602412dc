#pragma once

namespace test {

/// What one process shows to another, or a signal handler to the test: a pipe, in words.
class Signpost {
 public:
    /// To be made before the other process is; std::system_error where it can't be made.
    Signpost();
    ~Signpost();
    Signpost(const Signpost&) = delete;
    Signpost& operator=(const Signpost&) = delete;

    /// Lets one Await() return, the next or one under way. Signal handlers may call it.
    void Show() const;

    /// Waits for a Show().
    void Await() const;

 private:
    int ends_[2];
};

}  // namespace test
