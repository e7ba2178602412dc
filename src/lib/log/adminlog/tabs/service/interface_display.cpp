#include "log/adminlog/tabs/service/interface_display.h"

#include <mailserver-log/utils/error_line.h>

#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/texts.h"

#include <mero/mail_node_cluster.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>

namespace serverlog::log::adminlog::service {

namespace {

constexpr char kDigits[] = "0123456789";
constexpr char kTunnelPrefix[] = "6in4-";
constexpr char kDockerTexts[] = "/var/packages/Docker/target/ui/texts/";

// Statements spell it so, the blank included.
constexpr char kUnknown[] = "(unknow) ";

/// Names a text of the operating system's text files.
struct SystemText {
    char const* section;
    char const* key;
};

constexpr SystemText kLanPort = {"tcpip", "tcpip_lan_port"};
constexpr SystemText kBond = {"network", "if_bond"};
constexpr SystemText kGuestNetwork = {"wireless_ap", "ap_guest_network"};
constexpr SystemText kPppoe = {"tree", "leaf_pppoe"};
constexpr SystemText kTunnel = {"tree", "leaf_tunnel"};
constexpr SystemText kUsbModem = {"network", "usbmodem_name"};
constexpr SystemText kVpn = {"vpnc", "app_name"};

/// A kind of interface.
struct Kind {
    char const* letters;  ///< of the interface's name, without number and VLAN
    SystemText label;
    bool numbered;  ///< whether the number belongs to the label
};

constexpr Kind kKinds[] = {
    {"eth", kLanPort, true},
    {"br", kLanPort, false},
    {"ovs_eth", kLanPort, true},
    {"ovs_bond", kBond, true},
    {"wlan", {"network", "if_wireless"}, true},
    {"gwlan", kGuestNetwork, true},
    {"bond", kBond, true},
    {"ppp", kPppoe, false},
    {"lbr", {"network", "if_wireless_lan"}, false},
    {"gbr", kGuestNetwork, false},
    {"ap", {"network", "if_hotspot"}, true},
    {"usbmodem", kUsbModem, false},
};

std::string Text(SystemText const& text) {
    static Json::Value const texts = GetZsmParsedText(kStatementLanguage);
    return texts[text.section][text.key].asString();
}

bool BeginsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

/// `name` without the digits at its end.
std::string_view WithoutNumber(std::string_view name) {
    return name.substr(0, name.find_last_not_of(kDigits) + 1);
}

/// `name` without a VLAN at its end, such as the ".10" of `eth1.10`.
std::string_view WithoutVlan(std::string_view name) {
    std::string_view const rest = WithoutNumber(name);
    bool const has_vlan = rest.size() < name.size() && !rest.empty() && rest.back() == '.';
    return has_vlan ? rest.substr(0, rest.size() - 1) : name;
}

/// `name` without the first run of what is no digit.
std::string WithoutFirstLetters(std::string_view name) {
    std::size_t const begin = name.find_first_not_of(kDigits);
    if (begin == std::string_view::npos) {
        return std::string(name);
    }
    std::size_t const end = std::min(name.find_first_of(kDigits, begin), name.size());
    return std::string(name.substr(0, begin)) + std::string(name.substr(end));
}

/// The interface's number as labels count, from 1; none after an error line for what cannot be one.
std::optional<int> PortNumber(std::string_view name) {
    std::string const letterless = WithoutFirstLetters(name);
    std::string const text(WithoutVlan(letterless));
    int number = 0;
    auto const [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::invalid_argument) {
        SERVERLOG_ERROR_LINE("turn string to int fail: %s", text.c_str());
        return std::nullopt;
    }
    if (error != std::errc() || number == std::numeric_limits<int>::max()) {
        SERVERLOG_ERROR_LINE("turn string to int out of range: %s", text.c_str());
        return std::nullopt;
    }
    return number + 1;
}

/// A PPP interface with three digits, the first of them one of `hundreds`.
bool IsPppOf(std::string_view hundreds, std::string_view name) {
    constexpr std::string_view kPpp = "ppp";
    return name.size() == kPpp.size() + 3 && BeginsWith(name, kPpp) &&
           hundreds.find(name[kPpp.size()]) != std::string_view::npos &&
           name.find_first_not_of(kDigits, kPpp.size()) == std::string_view::npos;
}

std::string DockerText() {
    std::error_code error;
    if (!std::filesystem::is_directory(kDockerTexts, error)) {
        return kUnknown;
    }
    std::string const path = std::string(kDockerTexts) + kStatementLanguage;
    return GetParsedText(path)["app"]["displayname"].asString();
}

/// What stands before the address.
std::string KindText(std::string_view name) {
    std::string_view const letters = WithoutNumber(WithoutVlan(name));
    auto const* const kind =
        std::find_if(std::begin(kKinds), std::end(kKinds),
                     [letters](Kind const& candidate) { return letters == candidate.letters; });
    if (kind == std::end(kKinds)) {
        return kUnknown;
    }
    if (!kind->numbered) {
        return Text(kind->label);
    }
    std::optional<int> const number = PortNumber(name);
    return number ? Text(kind->label) + " " + std::to_string(*number) : kUnknown;
}

std::string NameText(std::string_view name) {
    if (name == "tun0" || IsPppOf("23", name)) {
        return Text(kVpn);
    }
    if (name == "docker0" || BeginsWith(name, "dzsm")) {
        return DockerText();
    }
    if (name == "pppoe") {
        return Text(kPppoe);
    }
    if (IsPppOf("1", name)) {
        return Text(kUsbModem);
    }
    return KindText(name);
}

/// The text of an interface, and of each tunnel around it.
std::string TunnelText(std::string_view name, std::string const& tail) {
    std::string before;
    std::string after = tail;
    // Not by calling itself: the name is the request's and may be of any length.
    while (BeginsWith(name, kTunnelPrefix)) {
        name.remove_prefix(std::string_view(kTunnelPrefix).size());
        before += Text(kTunnel) + "(";
        after += ")" + tail;
    }
    return before + NameText(name) + after;
}

}  // namespace

std::string InterfaceDisplay(std::string const& member, Json::Value const& object) {
    std::string tail;
    try {
        std::string ip = GetKeyVal(object, "ip");
        if (ip.empty()) {
            ip = MERO::POSTCUBE_SERVER::MEROMailNodeCluster().getHostIP();
        }
        tail = " (" + ip + ")";
        return TunnelText(GetKeyVal(object, member), tail);
    } catch (...) {
        SERVERLOG_ERROR_LINE("log interface change fail");
        return kUnknown + tail;
    }
}

}  // namespace serverlog::log::adminlog::service
