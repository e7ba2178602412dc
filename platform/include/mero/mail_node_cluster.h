#pragma once

#include <string>

namespace MERO::POSTCUBE_SERVER {

/// What a machine is in the mail cluster: four bytes, each 0 or 1. Callers fill it with zeros
/// before they ask. The last byte is the one that matters to those who act for the whole cluster.
struct Role {
    unsigned char single;   ///< a machine on its own
    unsigned char master;   ///< the cluster's leading machine
    unsigned char member;   ///< any other machine of the cluster
    unsigned char may_act;  ///< this machine may act for the cluster
};
static_assert(sizeof(Role) == 4, "callers rely on the fourth byte");

/// This machine's place in the mail cluster, as the settings of the mail server tell it:
///
/// | key                      | values                       | missing or empty              |
/// |--------------------------|------------------------------|-------------------------------|
/// | `cluster_role`           | `single`, `master`, `member` | `single`                      |
/// | `cluster_health`         | `yes`, `no`                  | `yes`                         |
/// | `cluster_host_ip`        | address of this machine      | taken from its own interfaces |
/// | `cluster_host_interface` | name of an interface         | the one with that address     |
///
/// Holds no state: each call looks afresh. Safe to call from several threads at once.
class MEROMailNodeCluster {
 public:
    /// This machine's address as text: the one set, else the first IPv4 address of an interface
    /// that is up and is no loopback, else the first such IPv6 address that is no link-local one,
    /// else a loopback address; empty when there is none at all.
    std::string getHostIP() const;

    /// The name of the interface with that address: the one set, else the one found; the first
    /// choice for getHostIP when no interface has the address that is set. Empty when there is
    /// none.
    std::string getHostIF() const;

    /// Tells the role of this machine. `single` and `master` may act for the cluster.
    ///
    /// @param role  receives the role
    /// @return false when the settings cannot be read or name no known role; `role` is then
    ///         untouched
    bool nodeRoleGet(Role& role) const;

    /// Tells whether the cluster works as it should.
    ///
    /// @param tell  true also writes a line to the mail log when it does not
    /// @return false also when the settings cannot be read or hold neither `yes` nor `no`
    bool isClusterHealth(bool tell) const;
};

}  // namespace MERO::POSTCUBE_SERVER
