#include "routes.h"

#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/webapi/adminlog/export_v1.h>
#include <mailserver-log/webapi/adminlog/list_user_v1.h>
#include <mailserver-log/webapi/adminlog/list_v1.h>
#include <mailserver-log/webapi/emaillog/export.h>
#include <mailserver-log/webapi/emaillog/list.h>
#include <mailserver-log/webapi/securitylog/export.h>
#include <mailserver-log/webapi/securitylog/list.h>

#include <algorithm>

#include "api_error.h"
#include "log_method.h"
#include "settings_apis.h"
#include "settings_method.h"
#include "statistic_method.h"
#include "token_method.h"
#include "trace_method.h"

namespace serverlog::endpoint {

namespace {

struct OwnMethod {
    const char* api;
    const char* method;
    bool writes_document;
    void (*run)(Call&);
};

constexpr OwnMethod kOwnMethods[] = {
    {"MERO.PostCubeServer.Audit.AdminLog", "list", false,
     RunLogMethod<db::AdminLogDB, webapi::adminlog::List_v1>},
    {"MERO.PostCubeServer.Audit.AdminLog", "list_user", false,
     RunLogMethod<db::AdminLogDB, webapi::adminlog::ListUser_v1>},
    {"MERO.PostCubeServer.Audit.AdminLog", "export", true,
     RunLogMethod<db::AdminLogDB, webapi::adminlog::Export_v1>},
    {"MERO.PostCubeServer.Log.Mail", "list", false,
     RunLogMethod<db::MailLogDB, webapi::emaillog::List>},
    {"MERO.PostCubeServer.Log.Mail", "export", true,
     RunLogMethod<db::MailLogDB, webapi::emaillog::Export>},
    {"MERO.PostCubeServer.Log.Mail", "trace", false, GetTrace},
    {"MERO.PostCubeServer.Log.Security", "list", false,
     RunLogMethod<db::SecurityLogDB, webapi::securitylog::List>},
    {"MERO.PostCubeServer.Log.Security", "export", true,
     RunLogMethod<db::SecurityLogDB, webapi::securitylog::Export>},
    {"MERO.PostCubeServer.Statistic", "get_traffic", false, GetTraffic},
    {"MERO.PostCubeServer.Statistic", "get_threat", false, GetThreat},
    {"MERO.PostCubeServer.Token", "get", false, GetToken},
};

// Exports and downloads hand something out. They are logged, but a link in a page may ask for them.
bool Changes(const std::string& method) {
    return method.rfind("export", 0) != 0 && method.rfind("download", 0) != 0;
}

// The method of this program itself that an operation stands for, such as the export of a log.
Route* FindOwn(std::vector<Route>& routes, const SettingsMethod& wanted) {
    const auto found = std::find_if(routes.begin(), routes.end(), [&wanted](const Route& route) {
        return route.run != RunSettingsMethod && route.api == wanted.api &&
               route.method == wanted.method;
    });
    return found == routes.end() ? nullptr : &*found;
}

std::string Text(const MERO::APIRequest& request, const char* key) {
    return request.GetAndCheckString(key, MERO::PARAM_OPTIONAL, nullptr).Get();
}

void RequireVersion(const MERO::APIRequest& request, const Route& route) {
    const auto version = request.GetAndCheckInt("version", MERO::PARAM_OPTIONAL, nullptr);
    if (version.IsInvalid() || version.Get() != kVersion) {
        throw ApiError(kNoSuchVersion, HttpStatus::kNotFound,
                       route.api + " " + route.method + " has version 1 only");
    }
}

}  // namespace

std::vector<Route> MakeRoutes() {
    std::vector<Route> routes;
    for (const OwnMethod& own : kOwnMethods) {
        routes.push_back({own.api, own.method, "", false, own.writes_document, own.run});
    }
    for (const SettingsMethod& method : ReadingMethods()) {
        routes.push_back({method.api, method.method, "", false, false, RunSettingsMethod});
    }
    for (const SettingsMethod& method : LoggedMethods()) {
        if (Route* const own = FindOwn(routes, method)) {
            own->operation = method.operation;
            continue;
        }
        routes.push_back({method.api, method.method, method.operation, Changes(method.method),
                          false, RunSettingsMethod});
    }
    return routes;
}

const Route& FindRoute(const std::vector<Route>& routes, const MERO::APIRequest& request) {
    const std::string api = Text(request, "api");
    const std::string method = Text(request, "method");
    bool has_api = false;
    for (const Route& route : routes) {
        has_api = has_api || route.api == api;
        if (route.api != api || route.method != method) {
            continue;
        }
        RequireVersion(request, route);
        return route;
    }
    if (has_api) {
        throw ApiError(kNoSuchMethod, HttpStatus::kNotFound, api + " has no such method");
    }
    throw ApiError(kNoSuchApi, HttpStatus::kNotFound, "there is no such API");
}

}  // namespace serverlog::endpoint
