#include "utils/merosdk/run_as.h"

#include <gtest/gtest.h>
#include <syslog.h>
#include <unistd.h>

#include <functional>
#include <stdexcept>

#include "support/child.h"
#include "support/syslog_socket.h"
#include "support/table.h"

namespace serverlog::utils {
namespace {

using test::kOtherUser;
constexpr unsigned kThirdUser = 8025;
constexpr test::Ids kThirdForGood = {kThirdUser, kThirdUser, kThirdUser};
const std::string kSource = "src/lib/utils/merosdk/run_as.cpp";

std::string Ids() {
    return std::to_string(geteuid()) + ":" + std::to_string(getegid());
}

// Runs RunAs in a child that `prepare` has given its rights, and tells the effective ids in the
// work
// ("none" when it did not run) and behind it.
std::string IdsInAndBehind(const std::function<void()>& prepare, unsigned uid, unsigned gid) {
    return test::InChild([&] {
        prepare();
        std::string within = "none";
        RunAs("a name", uid, gid, [&within] { within = Ids(); });
        return within + " " + Ids();
    });
}

void WorkForOtherUser() {
    test::SetIds(test::kRootForOther, test::kRootForOther);
}

void BecomeOtherUser() {
    test::SetIds(test::kOtherForGood, test::kOtherForGood);
}

TEST(RunAs, RootRunsWorkDirectly) {
    test::SyslogSocket log;
    std::string within;
    RunAsRoot("a name", [&within] { within = Ids(); });
    EXPECT_EQ(within, "0:0");
    EXPECT_TRUE(log.Take().empty());
}

TEST(RunAs, SwitchesAndComesBack) {
    SKIP_WITHOUT_SECOND_USER();
    test::SyslogSocket log;
    const auto nothing = [] {};
    const test::Table<const char*, std::function<void()>, unsigned, unsigned, std::string> rows = {
        {"root to other", nothing, kOtherUser, kOtherUser, "65534:65534 0:0"},
        {"root to other group", nothing, 0, kOtherUser, "0:65534 0:0"},
        {"other to root", WorkForOtherUser, 0, 0, "0:0 65534:65534"},
        {"other to third", WorkForOtherUser, kThirdUser, kThirdUser, "8025:8025 65534:65534"},
        {"other to itself", BecomeOtherUser, kOtherUser, kOtherUser, "65534:65534 65534:65534"},
        {"other, ids of -1 are root's", WorkForOtherUser, unsigned(-1), unsigned(-1),
         "0:0 65534:65534"},
    };
    for (const auto& [name, prepare, uid, gid, ids] : rows) {
        EXPECT_EQ(IdsInAndBehind(prepare, uid, gid), ids) << name;
    }
    EXPECT_TRUE(log.Take().empty());
}

TEST(RunAs, WorkThatThrowsLeavesTheFormerIds) {
    SKIP_WITHOUT_SECOND_USER();
    const auto work = [] {
        WorkForOtherUser();
        try {
            RunAs("a name", kThirdUser, kThirdUser,
                  [] { throw std::runtime_error("of the work"); });
        } catch (const std::runtime_error& error) {
            return Ids() + " " + error.what();
        }
        return std::string("nothing thrown");
    };
    EXPECT_EQ(test::InChild(work), "65534:65534 of the work");
}

void ExpectRefused(const std::function<void()>& prepare, unsigned uid, unsigned gid,
                   const std::string& ids, const std::string& place, const std::string& told) {
    test::SyslogSocket log;
    EXPECT_EQ(IdsInAndBehind(prepare, uid, gid), "none " + ids);
    const auto lines = log.Take();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].priority, 0x23);
    EXPECT_EQ(lines[0].text, kSource + place);
    EXPECT_EQ(lines[1].priority, LOG_MAIL | LOG_ERR);
    EXPECT_EQ(lines[1].text.substr(0, kSource.size()), kSource);
    EXPECT_EQ(lines[1].text.substr(lines[1].text.find(' ')), " RunAS failed: [a name] " + told);
}

TEST(RunAs, RefusedToRootIsToldAndNothingRuns) {
    SKIP_WITHOUT_SECOND_USER();
    ExpectRefused(BecomeOtherUser, 0, 0, "65534:65534", ":30 ERROR: RUN_AS(0, 0)",
                  "uid:0 gid:0 euid:65534 egid:65534");
}

TEST(RunAs, RefusedToAnotherUserIsToldAndNothingRuns) {
    ExpectRefused(test::DropCapabilities, kThirdUser, kOtherUser, "0:0",
                  ":39 ERROR: RUN_AS(8025, 65534)", "uid:8025 gid:65534 euid:0 egid:0");
}

TEST(RunAs, SwitchRefusedHalfWayLeavesNoRightsBehind) {
    SKIP_WITHOUT_SECOND_USER();
    // May become user 0 by the saved id; without capabilities user 0 may not change the group.
    const auto prepare = [] {
        test::SetIds({kOtherUser, kOtherUser, 0}, test::kOtherForGood);
        test::DropCapabilities();
    };
    ExpectRefused(prepare, 0, 0, "65534:65534", ":30 ERROR: RUN_AS(0, 0)",
                  "uid:0 gid:0 euid:65534 egid:65534");
}

TEST(RunAs, RefusedWayBackIsToldAndNotThrown) {
    SKIP_WITHOUT_SECOND_USER();
    test::SyslogSocket log;
    const auto work = [] {
        WorkForOtherUser();
        RunAsRoot("a name", [] { test::SetIds(kThirdForGood, kThirdForGood); });
        return Ids();
    };
    EXPECT_EQ(test::InChild(work), "8025:8025");
    const auto lines = log.Take();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].priority, 0x22);
    EXPECT_EQ(lines[0].text, kSource + ":30 ERROR: ~RUN_AS(0, 0)");
}

}  // namespace
}  // namespace serverlog::utils
