#include <fcntl.h>
#include <gtest/gtest.h>
#include <mailserver/file_lock.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

#include "support/child.h"
#include "support/signpost.h"
#include "support/text_file.h"

namespace {

constexpr char kPath[] = "/var/lock/postcube_server/some/folder/test.lock";

TEST(FileLock, OthersWaitForTheReleaseWhateverSignalsReachThem) {
    static const test::Signpost signalled;
    int lock = -1;
    ASSERT_TRUE(pscFileLockByFile(kPath, 1, &lock));
    EXPECT_NE(fcntl(lock, F_GETFD) & FD_CLOEXEC, 0);
    test::Child waiter([] {
        struct sigaction action = {};
        action.sa_handler = [](int) { signalled.Show(); };
        sigaction(SIGUSR1, &action, nullptr);  // without SA_RESTART
        int own = -1;
        if (pscFileLockByFile(kPath, 0, &own)) {
            return std::string("got it while it was held");
        }
        return std::string(pscFileLockByFile(kPath, 1, &own) ? "locked" : "failed");
    });
    waiter.AwaitWaitForLock();
    kill(waiter.pid(), SIGUSR1);
    signalled.Await();
    EXPECT_TRUE(pscFileUnlockByFile(lock));
    EXPECT_EQ(waiter.Wait(), "locked");
    EXPECT_FALSE(pscFileUnlockByFile(lock));
    EXPECT_FALSE(pscFileUnlockByFile(-1));
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

std::string LockInChild(const char* path, const std::function<void()>& prepare) {
    return test::InChild([&] {
        prepare();
        int lock = -1;
        return std::string(pscFileLockByFile(path, 1, &lock) ? "locked" : "failed");
    });
}

TEST(FileLock, ReadingRightIsEnough) {
    test::WriteTextFile("/tmp/read-only.lock", "", 0444);
    EXPECT_EQ(LockInChild("/tmp/read-only.lock", test::DropCapabilities), "locked");
}

TEST(FileLock, NarrowMaskShutsNobodyOut) {
    constexpr char kMadePath[] = "/var/lock/postcube_server/made/test.lock";
    EXPECT_EQ(LockInChild(kMadePath, [] { umask(077); }), "locked");
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(kMadePath).permissions(), perms(0644));
    const auto folder = std::filesystem::path(kMadePath).parent_path();
    EXPECT_EQ(std::filesystem::status(folder).permissions(), perms(0755));
}

}  // namespace
