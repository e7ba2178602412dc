#include "mailserver/domain_list.h"

#include "mailserver/domains.h"

int loadAllUtf8DomainList(std::list<std::string>& domains) {
    std::vector<platform::Domain> loaded;
    if (!platform::LoadDomains(loaded)) {
        return -1;
    }
    domains.clear();
    for (const platform::Domain& domain : loaded) {
        domains.push_back(domain.name);
    }
    return 0;
}
