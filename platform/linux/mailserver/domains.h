#pragma once

#include <string>
#include <vector>

namespace platform {

/// A mail domain that this server hosts.
struct Domain {
    int id;            ///< its "domain_id"
    std::string name;  ///< valid, in lower case, in Unicode
};

/// Reads the file of domains; loadAllUtf8DomainList tells its form and what is refused.
///
/// @param domains  receives the domains in the order of the file
/// @return false when the file cannot be read or is no such object; `domains` is then untouched,
///         and the mail log has the reason
bool LoadDomains(std::vector<Domain>& domains);

}  // namespace platform
