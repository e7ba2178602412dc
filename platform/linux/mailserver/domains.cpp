#include "mailserver/domains.h"

#include <json/reader.h>
#include <json/value.h>
#include <syslog.h>

#include <cerrno>
#include <cstring>
#include <memory>

#include "common/file_text.h"
#include "common/idn.h"
#include "mailserver/maillog.h"

namespace platform {

namespace {

constexpr char kPath[] = "/var/packages/PostCube-Server/etc/domains.json";

bool ParseFile(const std::string& text, Json::Value& document) {
    const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    std::string errors;
    const bool parsed = reader->parse(text.data(), text.data() + text.size(), &document, &errors);
    return parsed && document.isObject() && document["domains"].isArray();
}

void AddDomain(const Json::Value& record, std::vector<Domain>& domains) {
    const bool complete =
        record.isObject() && record["domain_id"].isInt() && record["name"].isString();
    Domain domain = {};
    if (!complete || !CanonicalDomain(record["name"].asString(), domain.name)) {
        maillog(LOG_WARNING, "%s: refused, no valid domain: %s", kPath,
                Json::writeString(Json::StreamWriterBuilder(), record).c_str());
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
            maillog(LOG_WARNING, "read %s: %s", kPath, std::strerror(errno));
            return false;
        case ReadOutcome::Read:
            break;
    }
    Json::Value document;
    if (!ParseFile(text, document)) {
        maillog(LOG_WARNING, "%s holds no object with an array \"domains\"", kPath);
        return false;
    }
    domains.clear();
    for (const Json::Value& record : document["domains"]) {
        AddDomain(record, domains);
    }
    return true;
}

}  // namespace platform
