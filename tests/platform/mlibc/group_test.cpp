#include <gtest/gtest.h>
#include <mailserver/user.h>
#include <mero/group.h>
#include <mlibc/group.h>

#include <array>

// The names come from the user and group files of the sandbox.
namespace {

constexpr unsigned kNobodysNumber = 4000000000U;

TEST(Group, RealNameByName) {
    std::array<char, 257> buffer = {};
    EXPECT_EQ(MLIBGroupRealNameGet("PostCube-Server", buffer.data(), buffer.size()), 0);
    EXPECT_STREQ(buffer.data(), "PostCube-Server");

    buffer.fill('#');
    EXPECT_EQ(MLIBGroupRealNameGet("no such group", buffer.data(), buffer.size()), -1);
    EXPECT_EQ(MLIBGroupRealNameGet("PostCube-Server", buffer.data(), 15), -1);
    EXPECT_EQ(MLIBGroupRealNameGet(nullptr, buffer.data(), buffer.size()), -1);
    EXPECT_EQ(buffer.front(), '#');
    EXPECT_EQ(MLIBGroupRealNameGet("PostCube-Server", buffer.data(), 16), 0);
    EXPECT_STREQ(buffer.data(), "PostCube-Server");
}

TEST(Group, RecordByNumber) {
    MEROGroup* record = nullptr;
    EXPECT_EQ(MEROGroupGetByGID(kNobodysNumber, &record), -1);
    EXPECT_EQ(record, nullptr);
    ASSERT_EQ(MEROGroupGetByGID(8025, &record), 0);
    EXPECT_STREQ(record->name, "PostCube-Server");
    EXPECT_EQ(record->gid, 8025U);
    MEROGroupFree(record);
    MEROGroupFree(nullptr);
}

TEST(User, NameByNumber) {
    std::string name = "as it was";
    EXPECT_EQ(getRealUserName(kNobodysNumber, name), -1);
    EXPECT_EQ(name, "as it was");
    EXPECT_EQ(getRealUserName(1024, name), 0);
    EXPECT_EQ(name, "admin");
}

}  // namespace
