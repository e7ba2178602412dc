#include "utils/merosdk/group.h"

#include <gtest/gtest.h>
#include <mailserver-log/exception/exception.h>
#include <unistd.h>

#include <vector>

#include "support/child.h"
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
        try {
            other.GetGroupName();
            return std::string("the group is still known");
        } catch (const Exception<ETag::SDK>&) {
            return asked.GetGroupName();
        }
    };
    EXPECT_EQ(test::InChild(without_group_file), "PostCube-Server");
}

TEST(ZsmGroup, UnknownGroupThrows) {
    test::SyslogSocket log;
    ZsmGroup group(54321);
    for (auto name : {&ZsmGroup::GetGroupName, &ZsmGroup::GetGroupRealName}) {
        try {
            (group.*name)();
            ADD_FAILURE() << "has a name";
        } catch (const Exception<ETag::SDK>& exception) {
            EXPECT_EQ(exception_str(exception), "Get zsm group name fail, 54321");
        }
        EXPECT_EQ(log.TakeErrors(), std::vector<std::string>{"Get zsm group name fail, 54321"});
    }
}

}  // namespace
}  // namespace serverlog::utils
