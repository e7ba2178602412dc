#include <fcntl.h>
#include <gtest/gtest.h>
#include <mailserver/file_lock.h>
#include <sched.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>

#include "support/child.h"
#include "support/text_file.h"

namespace {

constexpr char kPath[] = "/var/lock/postcube_server/some/folder/test.lock";

class Signpost {
 public:
    Signpost() { EXPECT_EQ(pipe(ends_.data()), 0); }
    ~Signpost() {
        close(ends_[0]);
        close(ends_[1]);
    }
    void Show() { EXPECT_EQ(write(ends_[1], "!", 1), 1); }
    void Await() {
        char sign = 0;
        EXPECT_EQ(read(ends_[0], &sign, 1), 1);
    }
    int Writable() const { return ends_[1]; }

 private:
    std::array<int, 2> ends_ = {-1, -1};
};

bool IsWaitingForALock(pid_t process) {
    const std::string waiter = "-> FLOCK  ADVISORY  WRITE " + std::to_string(process) + " ";
    return test::ReadTextFile("/proc/locks").find(waiter) != std::string::npos;
}

TEST(FileLock, HoldsAgainstOtherProcessesUntilReleased) {
    int lock = -1;
    ASSERT_TRUE(pscFileLockByFile(kPath, 1, &lock));
    EXPECT_NE(fcntl(lock, F_GETFD) & FD_CLOEXEC, 0);
    Signpost refused;
    test::Child other([&] {
        int own = -1;
        if (pscFileLockByFile(kPath, 0, &own)) {
            return std::string("got it while it was held");
        }
        refused.Show();
        if (!pscFileLockByFile(kPath, 1, &own)) {
            return std::string("did not wait");
        }
        return std::string(std::filesystem::exists("/tmp/released") ? "in turn" : "too early");
    });
    refused.Await();
    test::WriteTextFile("/tmp/released", "");
    EXPECT_TRUE(pscFileUnlockByFile(lock));
    EXPECT_EQ(other.Wait(), "in turn");
    EXPECT_FALSE(pscFileUnlockByFile(lock));
    EXPECT_FALSE(pscFileUnlockByFile(-1));
}

TEST(FileLock, EndsWithItsProcess) {
    int lock = -1;
    {
        Signpost locked;
        test::Child holder([&] {
            int own = -1;
            pscFileLockByFile(kPath, 1, &own);
            locked.Show();
            pause();
            return std::string();
        });
        locked.Await();
        EXPECT_FALSE(pscFileLockByFile(kPath, 0, &lock));
    }
    EXPECT_TRUE(pscFileLockByFile(kPath, 0, &lock));
    EXPECT_TRUE(pscFileUnlockByFile(lock));
}

TEST(FileLock, SignalDoesNotEndTheWait) {
    static int signal_pipe;
    int lock = -1;
    ASSERT_TRUE(pscFileLockByFile(kPath, 1, &lock));
    Signpost signalled;
    signal_pipe = signalled.Writable();
    test::Child waiter([] {
        struct sigaction action = {};
        action.sa_handler = [](int) { static_cast<void>(!write(signal_pipe, "!", 1)); };
        sigaction(SIGUSR1, &action, nullptr);  // without SA_RESTART
        int own = -1;
        return std::string(pscFileLockByFile(kPath, 1, &own) ? "locked" : "failed");
    });
    while (!IsWaitingForALock(waiter.pid())) {
        sched_yield();
    }
    kill(waiter.pid(), SIGUSR1);
    signalled.Await();
    EXPECT_TRUE(pscFileUnlockByFile(lock));
    EXPECT_EQ(waiter.Wait(), "locked");
}

TEST(FileLock, PathsThatCannotBeLocked) {
    test::WriteTextFile("/tmp/file", "");
    int descriptor = 77;
    EXPECT_FALSE(pscFileLockByFile("/var/lock", 1, &descriptor));
    EXPECT_FALSE(pscFileLockByFile("/tmp/file/lock", 1, &descriptor));
    EXPECT_FALSE(pscFileLockByFile("", 1, &descriptor));
    EXPECT_FALSE(pscFileLockByFile(nullptr, 1, &descriptor));
    EXPECT_FALSE(pscFileLockByFile(kPath, 1, nullptr));
    EXPECT_EQ(descriptor, 77);
}

TEST(FileLock, ReadingRightIsEnough) {
    test::WriteTextFile("/tmp/read-only.lock", "", 0444);
    EXPECT_EQ(
        test::InChild([] {
            test::DropCapabilities();
            int lock = -1;
            return std::string(pscFileLockByFile("/tmp/read-only.lock", 1, &lock) ? "yes" : "no");
        }),
        "yes");
}

TEST(FileLock, NarrowMaskShutsNobodyOut) {
    constexpr char kMadePath[] = "/var/lock/postcube_server/made/test.lock";
    EXPECT_EQ(test::InChild([&] {
                  umask(077);
                  int lock = -1;
                  return std::string(pscFileLockByFile(kMadePath, 1, &lock) ? "yes" : "no");
              }),
              "yes");
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(kMadePath).permissions(), perms(0644));
    const auto folder = std::filesystem::path(kMadePath).parent_path();
    EXPECT_EQ(std::filesystem::status(folder).permissions(), perms(0755));
}

}  // namespace
