#include "stores/rotation_watch.h"

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "support/text_file.h"

namespace {

TEST(RotationWatch, ShowsOnATerminalHowTheFileGrows) {
    test::WriteTextFile("/tmp/work.db", std::string(1536, 'x'));
    int finish[2];
    ASSERT_EQ(pipe(finish), 0);
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        const serverlog::program::RotationWatch watch("mail", "/tmp/work.db");
        close(finish[1]);
        char byte = 0;
        _exit(read(finish[0], &byte, 1) == 0 ? 0 : 1);  // without the end of the watch
    }
    close(finish[0]);
    std::string shown;
    char buffer[256];
    const std::string wanted = "rotating mail: 1.5 KiB in the new file, 0 s";
    for (ssize_t size; shown.find(wanted) == std::string::npos &&
                       (size = read(terminal, buffer, sizeof buffer)) > 0;) {
        shown.append(buffer, static_cast<std::size_t>(size));
    }
    close(finish[1]);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_NE(shown.find(wanted), std::string::npos) << shown;
    close(terminal);
}

TEST(RotationWatch, ShowsNothingElsewhere) {
    testing::internal::CaptureStderr();
    { const serverlog::program::RotationWatch watch("mail", "/tmp/work.db"); }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
