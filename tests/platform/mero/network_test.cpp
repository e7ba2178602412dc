#include <gtest/gtest.h>
#include <mero/network.h>
#include <sched.h>
#include <sys/mount.h>

#include <array>
#include <filesystem>

#include "support/child.h"
#include "support/text_file.h"

namespace {

constexpr char kCannotMount[] = "cannot mount";

// Puts a folder of its own in the place of the kernel's list of interfaces and asks.
std::string PppoeInterface(const std::vector<std::pair<std::string, std::string>>& types,
                           int size) {
    return test::InChild([&]() -> std::string {
        if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
            return kCannotMount;
        }
        mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
        if (mount("interfaces", "/sys/class/net", "tmpfs", 0, nullptr) != 0) {
            return kCannotMount;
        }
        for (const auto& [name, type] : types) {
            std::filesystem::create_directory("/sys/class/net/" + name);
            test::WriteTextFile("/sys/class/net/" + name + "/type", type);
        }
        std::array<char, 256> buffer = {"as it was"};
        const int result = MEROPPPoeIntfGet(buffer.data(), size);
        return std::to_string(result) + " " + buffer.data();
    });
}

TEST(PppoeInterface, FirstPointToPointLink) {
    if (PppoeInterface({}, 256) == kCannotMount) {
        GTEST_SKIP() << "needs the right to mount a folder";
    }
    EXPECT_EQ(PppoeInterface({}, 256), "-1 as it was");
    EXPECT_EQ(PppoeInterface({{"eth0", "1\n"}, {"lo", "772\n"}}, 256), "-1 as it was");
    EXPECT_EQ(PppoeInterface({{"ppp10", "512\n"}, {"eth0", "1\n"}, {"ppp0", "512\n"}}, 256),
              "0 ppp0");
    EXPECT_EQ(PppoeInterface({{"ppp0", "512\n"}}, 5), "0 ppp0");
    EXPECT_EQ(PppoeInterface({{"ppp0", "512\n"}}, 4), "-1 as it was");
}

}  // namespace
