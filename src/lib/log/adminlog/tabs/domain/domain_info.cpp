#include "log/adminlog/tabs/domain/domain_info.h"

#include <mailserver-log/utils/error_line.h>

#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

#include <mailserver/smtp_conf.h>

#include <charconv>
#include <system_error>

namespace serverlog::log::adminlog::domain {

namespace {

constexpr char kDomainApi[] = "MERO.PostCubeServer.Domain";
constexpr char kSettingsApi[] = "MERO.PostCubeServer.Domain.Settings";

/// The "domain_info" that `api` gives for the domain of `params`.
Json::Value DomainRecord(char const* api, char const* method, Json::Value const& params) {
    Json::Value query;
    query["domain_id"] = TryGetObjectVal(params, "domain_id");
    Json::Value const record = LoadOldState(api, method, query)["domain_info"];
    return record.isObject() ? record : Json::Value();
}

/// 0, which no domain has, for what is no number.
int DomainId(Json::Value const& params) {
    std::string const text = TryGetKeyVal(params, "domain_id");
    char const* const end = text.data() + text.size();
    int id = 0;
    auto const [stop, error] = std::from_chars(text.data(), end, id);
    return stop == end && error == std::errc() ? id : 0;
}

}  // namespace

Json::Value DomainInfo(Json::Value const& /*params*/) {
    return IndexedEntries(LoadOldState(kDomainApi, "list", WholeListQuery())["domains"],
                          "domain_id");
}

Json::Value ThisDomainInfo(Json::Value const& params) {
    return TryGetObjectVal(DomainInfo(params), TryGetKeyVal(params, "domain_id"));
}

Json::Value ThisDomainName(Json::Value const& params) {
    SmtpConf conf;
    if (!conf.LoadSettings()) {
        SERVERLOG_ERROR_LINE("Load smtp conf fail");
        return Json::Value();
    }
    int const id = DomainId(params);
    std::string name;
    if (!conf.GetDomainName(id, name)) {
        SERVERLOG_ERROR_LINE("Domain id %d not exist", id);
        return Json::Value();
    }
    Json::Value info;
    info["name"] = name;
    return info;
}

Json::Value DkimInfo(Json::Value const& params) {
    return DomainRecord(kDomainApi, "get_security", params);
}

Json::Value UsageInfo(Json::Value const& params) {
    return DomainRecord(kSettingsApi, "get", params);
}

}  // namespace serverlog::log::adminlog::domain
