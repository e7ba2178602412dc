#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

namespace test {

/// A process of its own that does one piece of work: for what would spoil the test's process, such
/// as giving up rights, and for what takes several processes.
class Child {
 public:
    /// Forks and starts `work` in the child. What it returns goes to Wait(), as does the text of an
    /// exception that it throws. Failures of EXPECT in it are lost.
    explicit Child(const std::function<std::string()>& work);

    /// Kills the child when nobody has waited for it.
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Waits for the end of the work and gives its result; "killed by signal N" when the child was
    /// killed. To be called once.
    std::string Wait();

    /// Returns once the child waits for the lock of a file (flock(2)) that another process holds.
    void AwaitWaitForLock() const;

    pid_t pid() const { return pid_; }

 private:
    pid_t pid_;
    int result_;
};

/// Child(work).Wait().
std::string InChild(const std::function<std::string()>& work);

/// The state of a process as proc(5) names it: 'S' when it sleeps, 'Z' when it is dead and nobody
/// has waited for it. '?' when there is no such process.
char StateOf(pid_t process);

/// InChild, where the child is held to the owner and mode of files: see DropCapabilities.
std::string InChildWithoutRights(const std::function<std::string()>& work);

/// Takes from the process, for good, all that lets user 0 do more than others: it is then held to
/// the owner and mode of files and to the ids that it has.
void DropCapabilities();

/// The three ids that a process has for its user, and for its group (credentials(7)).
struct Ids {
    unsigned real;
    unsigned effective;
    unsigned saved;
};

/// Gives the process these ids; throws std::system_error where that is refused.
void SetIds(const Ids& user, const Ids& group);

/// An ordinary user and a group of the same number, to be taken on in a child. Where the sandbox
/// knows one user only, nobody can become it: see HasSecondUser.
inline constexpr unsigned kOtherUser = 65534;

/// Root that works for kOtherUser and can go back, as SetIds takes it.
inline constexpr Ids kRootForOther = {0, kOtherUser, 0};

/// kOtherUser for good.
inline constexpr Ids kOtherForGood = {kOtherUser, kOtherUser, kOtherUser};

/// Whether this process can become kOtherUser.
bool HasSecondUser();

}  // namespace test

/// Skips a test that needs HasSecondUser, and says so.
#define SKIP_WITHOUT_SECOND_USER()                                               \
    if (!::test::HasSecondUser()) {                                              \
        GTEST_SKIP() << "needs a second user: run the tests as root to have it"; \
    }                                                                            \
    static_assert(true)
