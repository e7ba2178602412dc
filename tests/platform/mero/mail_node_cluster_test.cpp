#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <mero/mail_node_cluster.h>
#include <net/if.h>
#include <syslog.h>

#include <cstring>
#include <filesystem>

#include "support/syslog_socket.h"
#include "support/table.h"
#include "support/text_file.h"

namespace {

using MERO::POSTCUBE_SERVER::MEROMailNodeCluster;
using MERO::POSTCUBE_SERVER::Role;

constexpr char kSettings[] = "/var/packages/PostCube-Server/etc/mailserver.conf";

TEST(Cluster, RoleAndHealth) {
    test::SyslogSocket log;
    const test::Table<const char*, const char*, bool, int, bool> rows = {
        {"nothing set", "", true, 1, true},
        {"single", "cluster_role=\"single\"\ncluster_health=\"yes\"\n", true, 1, true},
        {"master", "cluster_role=\"master\"\ncluster_health=\"no\"\n", true, 1, false},
        {"member", "cluster_role=\"member\"\n", true, 0, true},
        {"unknown words", "cluster_role=\"Master\"\ncluster_health=\"maybe\"\n", false, 0, false},
        {"settings that cannot be read", "hello\n", false, 0, false},
    };
    for (const auto& [name, settings, has_role, fourth_byte, healthy] : rows) {
        test::WriteTextFile(kSettings, settings);
        const MEROMailNodeCluster cluster;
        Role role = {};
        EXPECT_EQ(cluster.nodeRoleGet(role), has_role) << name;
        unsigned char bytes[4];
        std::memcpy(bytes, &role, sizeof bytes);
        EXPECT_EQ(bytes[3], fourth_byte) << name;
        EXPECT_EQ(cluster.isClusterHealth(false), healthy) << name;
    }
    log.Take();
    test::WriteTextFile(kSettings, "cluster_health=\"no\"\n");
    EXPECT_FALSE(MEROMailNodeCluster().isClusterHealth(false));
    EXPECT_EQ(log.Take().size(), 0U);
    EXPECT_FALSE(MEROMailNodeCluster().isClusterHealth(true));
    EXPECT_EQ(log.TakeTexts(LOG_MAIL | LOG_WARNING).size(), 1U);
}

TEST(Cluster, AddressAndInterface) {
    const MEROMailNodeCluster cluster;
    std::filesystem::remove(kSettings);
    const std::string address = cluster.getHostIP();
    const std::string interface = cluster.getHostIF();
    unsigned char binary[16];
    EXPECT_TRUE(inet_pton(AF_INET, address.c_str(), binary) == 1 ||
                inet_pton(AF_INET6, address.c_str(), binary) == 1)
        << address;
    EXPECT_NE(if_nametoindex(interface.c_str()), 0U) << interface;

    test::WriteTextFile(kSettings, "cluster_host_ip=\"127.0.0.1\"\n");
    EXPECT_EQ(cluster.getHostIP(), "127.0.0.1");
    EXPECT_EQ(cluster.getHostIF(), "lo");

    test::WriteTextFile(kSettings,
                        "cluster_host_ip=\"192.0.2.7\"\ncluster_host_interface=\"ovs_eth0\"\n");
    EXPECT_EQ(cluster.getHostIP(), "192.0.2.7");
    EXPECT_EQ(cluster.getHostIF(), "ovs_eth0");

    test::WriteTextFile(kSettings, "cluster_host_ip=\"192.0.2.7\"\n");
    EXPECT_EQ(cluster.getHostIF(), interface);
}

}  // namespace
