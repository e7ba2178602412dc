#include "mailserver/domains.h"

#include <syslog.h>

#include <cerrno>
#include <cstring>

#include "common/file_text.h"
#include "common/idn.h"
#include "common/json_text.h"
#include "common/last_error.h"
#include "mailserver/maillog.h"

namespace platform {

namespace {

constexpr char kPath[] = "/var/packages/PostCube-Server/etc/domains.json";

void AddDomain(const Json::Value& record, std::vector<Domain>& domains) {
    const bool complete =
        record.isObject() && record["domain_id"].isInt() && record["name"].isString();
    Domain domain = {};
    if (!complete || !CanonicalDomain(record["name"].asString(), domain.name)) {
        maillog(LOG_WARNING, "%s: refused, no valid domain: %s", kPath, ToJsonText(record).c_str());
        return;
    }
    domain.id = record["domain_id"].asInt();
    domains.push_back(std::move(domain));
}

}  // namespace

bool LoadDomains(std::vector<Domain>& domains) {
    std::string text;
    switch (ReadText(kPath, text)) {
        case ReadOutcome::Missing:
            domains.clear();
            return true;
        case ReadOutcome::Failed:
            PLATFORM_SET_LAST_ERROR(errno);
            maillog(LOG_WARNING, "read %s: %s", kPath, std::strerror(errno));
            return false;
        case ReadOutcome::Read:
            break;
    }
    Json::Value document;
    if (!ParseJsonText(text, document) || !document.isObject() || !document["domains"].isArray()) {
        maillog(LOG_WARNING, "%s holds no object with an array \"domains\"", kPath);
        PLATFORM_SET_LAST_ERROR(EBADMSG);
        return false;
    }
    domains.clear();
    for (const Json::Value& record : document["domains"]) {
        AddDomain(record, domains);
    }
    return true;
}

}  // namespace platform
