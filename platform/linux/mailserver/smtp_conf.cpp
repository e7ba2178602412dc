#include "mailserver/smtp_conf.h"

#include "mailserver/domains.h"

bool SmtpConf::LoadSettings() {
    std::vector<platform::Domain> domains;
    if (!platform::LoadDomains(domains)) {
        return false;
    }
    names_.clear();
    for (const platform::Domain& domain : domains) {
        names_.emplace(domain.id, domain.name);
    }
    return true;
}

bool SmtpConf::GetDomainName(const int& id, std::string& name) const {
    const auto found = names_.find(id);
    if (found == names_.end()) {
        return false;
    }
    name = found->second;
    return true;
}
