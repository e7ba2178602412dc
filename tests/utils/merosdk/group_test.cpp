#include "utils/merosdk/group.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/outcome.h"
#include "support/syslog_socket.h"

namespace serverlog::utils {
namespace {

TEST(ZsmGroup, NamesOfAGroup) {
    ZsmGroup group(8025);
    EXPECT_EQ(group.GetGroupRealName(), "PostCube-Server");
    EXPECT_EQ(group.GetGroupName(), "PostCube-Server");
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
