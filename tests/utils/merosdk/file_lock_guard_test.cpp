#include "utils/merosdk/file_lock_guard.h"

#include <gtest/gtest.h>
#include <mailserver/file_lock.h>
#include <syslog.h>
#include <unistd.h>

#include <boost/filesystem/directory.hpp>
#include <boost/filesystem/operations.hpp>
#include <vector>

#include "support/child.h"
#include "support/outcome.h"
#include "support/syslog_socket.h"
#include "utils/files.h"

namespace serverlog::utils {
namespace {

const std::string kLock = "/var/lock/postcube_server/deep/er/test.lock";

// Whether another process could take the lock at this moment.
bool IsFree() {
    const auto take = [] {
        int descriptor = -1;
        return std::string(pscFileLockByFile(kLock.c_str(), 0, &descriptor) ? "free" : "held");
    };
    return test::InChild(take) == "free";
}

TEST(FileLockGuard, HoldsForItsScopeAndByCalls) {
    test::SyslogSocket log;
    {
        FileLockGuard guard(kLock);
        EXPECT_FALSE(IsFree());
        guard.Lock();  // held already
        guard.Unlock();
        EXPECT_TRUE(IsFree());
        guard.Unlock();  // free already
        guard.Lock();
        EXPECT_FALSE(IsFree());
    }
    EXPECT_TRUE(IsFree());
    EXPECT_TRUE(log.TakeErrors().empty());
}

TEST(FileLockGuard, RefusedLockThrows) {
    test::SyslogSocket log;
    const struct {
        std::string path;
        std::string text;
    } rows[] = {
        {"", "Invalid file lock path, empty file path"},
        {"/var/lock", "Can not get exclusive file lock, /var/lock"},
    };
    for (const auto& row : rows) {
        const auto hold = [&row] { const FileLockGuard guard(row.path); };
        EXPECT_EQ(test::OutcomeOf<ETag::SDK>(hold), row.text);
        const auto lines = log.TakeErrors();
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines.back(), row.text);
    }
}

// Takes the lock's file from a guard of this process behind its back.
void CloseLockFile() {
    namespace fs = boost::filesystem;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        boost::system::error_code error;
        if (fs::read_symlink(entry.path(), error) == kLock) {
            close(std::stoi(FileName(entry.path().string())));
            return;
        }
    }
    ADD_FAILURE() << "no open " << kLock;
}

TEST(FileLockGuard, RefusedReleaseThrowsAndIsOnlyLoggedAtTheEnd) {
    test::SyslogSocket log;
    // Connected now, or the log's socket would get the number of the file that is closed below.
    openlog("test", LOG_NDELAY, LOG_USER);
    const std::string refused = "Can not release file lock, " + kLock;
    {
        FileLockGuard guard(kLock);
        CloseLockFile();
        EXPECT_EQ(test::OutcomeOf<ETag::SDK>([&guard] { guard.Unlock(); }), refused);
        EXPECT_EQ(log.TakeErrors(), std::vector<std::string>{refused});
    }
    EXPECT_EQ(log.TakeErrors(), (std::vector<std::string>{
                                    refused, "Release lock fail when guard destruct: " + kLock}));
}

}  // namespace
}  // namespace serverlog::utils
