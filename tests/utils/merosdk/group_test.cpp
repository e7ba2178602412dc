#include "utils/merosdk/group.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <vector>

#include "support/child.h"
#include "support/outcome.h"
#include "support/syslog_socket.h"
#include "utils/files.h"

namespace serverlog::utils {
namespace {

TEST(ZsmGroup, NamesOfAGroup) {
    ZsmGroup group(8025);
    EXPECT_EQ(group.GetGroupRealName(), "PostCube-Server");
    EXPECT_EQ(group.GetGroupName(), "PostCube-Server");
}

TEST(ZsmGroup, AsksOnce) {
    const auto without_group_file = [] {
        ZsmGroup asked(8025);
        ZsmGroup other(8025);
        asked.GetGroupName();
        MkDir("/tmp/empty");
        if (chroot("/tmp/empty") != 0) {
            return std::string("chroot is refused");
        }
        const std::string others = test::OutcomeOf<ETag::SDK>([&] { other.GetGroupName(); });
        return others == "done" ? "the group is still known" : asked.GetGroupName();
    };
    EXPECT_EQ(test::InChild(without_group_file), "PostCube-Server");
}

TEST(ZsmGroup, UnknownGroupThrows) {
    test::SyslogSocket log;
    const std::string refused = "Get zsm group name fail, 54321";
    ZsmGroup group(54321);
    for (auto name : {&ZsmGroup::GetGroupName, &ZsmGroup::GetGroupRealName}) {
        EXPECT_EQ(test::OutcomeOf<ETag::SDK>([&] { (group.*name)(); }), refused);
        EXPECT_EQ(log.TakeErrors(), std::vector<std::string>{refused});
    }
}

}  // namespace
}  // namespace serverlog::utils
