#include "log/adminlog/tabs/service/interface_display.h"

#include "log/adminlog/tabs/service/network_interface.h"
#include "support/child.h"
#include "support/json_value.h"
#include "support/operation_fixture.h"
#include "support/table.h"
#include "support/text_file.h"

#include <gmock/gmock.h>
#include <json/value.h>
#include <sched.h>
#include <sys/mount.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace serverlog::log::adminlog;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class InterfaceDisplayTest : public test::OperationTest {
 protected:
    static std::string Show(Json::Value const& name, Json::Value const& ip = "10.0.0.1") {
        Json::Value object;
        object["interface"] = name;
        object["ip"] = ip;
        return service::InterfaceDisplay("interface", object);
    }
};

TEST_F(InterfaceDisplayTest, ShowsEachKindByItsName) {
    const test::Table<char const*, char const*> rows = {
        {"eth0", "LAN 1 (10.0.0.1)"},
        {"eth007", "LAN 8 (10.0.0.1)"},
        {"br0", "LAN (10.0.0.1)"},
        {"br", "LAN (10.0.0.1)"},
        {"ovs_eth0", "LAN 1 (10.0.0.1)"},
        {"wlan0", "Wi-Fi 1 (10.0.0.1)"},
        {"gwlan0", "Guest network 1 (10.0.0.1)"},
        {"bond0", "Bond 1 (10.0.0.1)"},
        {"ppp0", "PPPoE (10.0.0.1)"},
        {"lbr0", "Wireless LAN (10.0.0.1)"},
        {"gbr0", "Guest network (10.0.0.1)"},
        {"ap0", "Wireless hotspot 1 (10.0.0.1)"},
        {"usbmodem0", "USB modem (10.0.0.1)"},
        // Names with a meaning of their own, and the ranges of PPP interfaces.
        {"tun0", "VPN (10.0.0.1)"},
        {"tun1", "(unknow)  (10.0.0.1)"},
        {"pppoe", "PPPoE (10.0.0.1)"},
        {"ppp200", "VPN (10.0.0.1)"},
        {"ppp399", "VPN (10.0.0.1)"},
        {"ppp400", "PPPoE (10.0.0.1)"},
        {"ppp2011", "PPPoE (10.0.0.1)"},
        {"ppp100", "USB modem (10.0.0.1)"},
        {"ppp199", "USB modem (10.0.0.1)"},
        {"ppp099", "PPPoE (10.0.0.1)"},
        {"ppp20a", "(unknow)  (10.0.0.1)"},
        // A VLAN counts neither for the letters nor for the number.
        {"eth1.10", "LAN 2 (10.0.0.1)"},
        {"ovs_eth0.4094", "LAN 1 (10.0.0.1)"},
        {"br0.5", "LAN (10.0.0.1)"},
        {"eth1.10.20", "(unknow)  (10.0.0.1)"},
        // Tunnels.
        {"6in4-eth0", "IPv6 tunnel(LAN 1 (10.0.0.1)) (10.0.0.1)"},
        {"6in4-6in4-br0", "IPv6 tunnel(IPv6 tunnel(LAN (10.0.0.1)) (10.0.0.1)) (10.0.0.1)"},
        {"6in4-xyz0", "IPv6 tunnel((unknow)  (10.0.0.1)) (10.0.0.1)"},
        // Unknown names.
        {"xyz0", "(unknow)  (10.0.0.1)"},
        {"ETH0", "(unknow)  (10.0.0.1)"},
        {"eth0a", "(unknow)  (10.0.0.1)"},
        {"eth.", "(unknow)  (10.0.0.1)"},
        {"0", "(unknow)  (10.0.0.1)"},
        {"", "(unknow)  (10.0.0.1)"},
        {"docker0", "(unknow)  (10.0.0.1)"},
    };
    for (const auto& [name, text] : rows) {
        EXPECT_EQ(Show(name), text) << name;
    }
    EXPECT_THAT(syslog_.TakeErrors(), IsEmpty());
}

TEST_F(InterfaceDisplayTest, NamesContainersWhereTheirTextsAre) {
    std::string const folder = "/var/packages/Docker/target/ui/texts/enu";
    std::filesystem::create_directories(folder);
    test::WriteTextFile(folder + "/strings", "[app]\ndisplayname=\"Containers\"\n");
    EXPECT_EQ(Show("docker0"), "Containers (10.0.0.1)");
    EXPECT_EQ(Show("dzsm1234"), "Containers (10.0.0.1)");
    EXPECT_EQ(Show("docker1"), "(unknow)  (10.0.0.1)");
    std::filesystem::remove_all("/var/packages/Docker");
}

TEST_F(InterfaceDisplayTest, TellsOfNamesThatItCannotRead) {
    const test::Table<Json::Value, char const*> rows = {
        {"eth", "turn string to int fail: "},
        {"eth2147483647", "turn string to int out of range: 2147483647"},
        {"eth99999999999999999999.1", "turn string to int out of range: 99999999999999999999"},
        {Json::arrayValue, "log interface change fail"},
    };
    for (const auto& [name, error] : rows) {
        EXPECT_EQ(Show(name), "(unknow)  (10.0.0.1)") << error;
        EXPECT_THAT(syslog_.TakeErrors(), ElementsAre(HasSubstr(error)));
    }
    EXPECT_EQ(Show("eth0", Json::objectValue), "(unknow) ");
    EXPECT_EQ(Show("eth2147483646"), "LAN 2147483647 (10.0.0.1)");
}

TEST_F(InterfaceDisplayTest, TakesTheAddressOfThisMachineWhereThereIsNone) {
    EXPECT_EQ(Show("eth0", ""), "LAN 1 (192.0.2.1)");
    EXPECT_EQ(Show("6in4-eth0", Json::Value()), "IPv6 tunnel(LAN 1 (192.0.2.1)) (192.0.2.1)");
    EXPECT_EQ(service::InterfaceDisplay("interface", Json::Value()), "(unknow)  (192.0.2.1)");
}

TEST_F(InterfaceDisplayTest, BearsALongName) {
    std::string name;
    for (int i = 0; i < 100000; ++i) {
        name += "6in4-";
    }
    EXPECT_THAT(Show(name + std::string(100000, '7')), HasSubstr("((unknow)  (10.0.0.1)) (10."));
}

// In a namespace of its own, whose list of interfaces has one for PPPoE.
TEST_F(InterfaceDisplayTest, PppoeIsReplacedByItsInterface) {
    std::string const text = test::InChild([]() -> std::string {
        if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
            return "cannot mount";
        }
        mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
        if (mount("interfaces", "/sys/class/net", "tmpfs", 0, nullptr) != 0) {
            return "cannot mount";
        }
        std::filesystem::create_directory("/sys/class/net/ppp7");
        test::WriteTextFile("/sys/class/net/ppp7/type", "512\n");
        Json::Value params = test::JsonOf(R"({"interface":"pppoe"})");
        Json::Value old_info = test::JsonOf(R"({"interface":"eth0"})");
        Json::Value const diff = service::DiffInterface(old_info, params);
        return params["interface"].asString() + " " + diff["interface"].asString();
    });
    if (text == "cannot mount") {
        GTEST_SKIP() << "needs the right to mount a folder";
    }
    EXPECT_EQ(text, "ppp7 interface");
}

}  // namespace
