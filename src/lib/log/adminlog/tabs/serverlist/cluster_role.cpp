#include "log/adminlog/tabs/serverlist/cluster_role.h"

#include "log/adminlog/tabs/serverlist/templates.h"
#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog::serverlist {

namespace {

constexpr Setting kSettings[] = {{Label{"server_list", "balancer_master"}, "role", nullptr}};

/// The server's name and address; the address alone when the list has no name for it.
std::string ServerText(Json::Value const& servers, std::string const& ip) {
    Json::Value const by_ip = servers.isArray() ? IndexedEntries(servers, "ip") : servers;
    std::string const name = TryGetKeyVal(TryGetObjectVal(by_ip, ip), "server_name");
    return name.empty() ? ip : name + " (" + ip + ")";
}

}  // namespace

Json::Value ClusterRoleInfo(Json::Value const& /*params*/) {
    Json::Value query;
    query["additional"].append("role_info");
    return LoadOldState("MERO.PostCubeServer.ServerList", "list", query);
}

Json::Value DiffClusterRole(Json::Value& old_info, Json::Value& params) {
    std::string const role = TryGetKeyVal(params, "role");
    Json::Value const role_info = TryGetObjectVal(old_info, "role_info");
    Json::Value const servers = TryGetObjectVal(role_info, "server_list");
    std::string const old_master = TryGetKeyVal(role_info, "cluster_master");
    std::string const new_master = TryGetKeyVal(params, "ip");
    bool const leads = role == "balancer" || role == "cluster_master";
    if (!leads || old_master.empty() || new_master.empty()) {
        return Json::Value();
    }
    // Texts of its own instead of members of the request, which is logged as it came.
    Json::Value diff;
    diff["old"]["role"] = ServerText(servers, old_master);
    diff["new"]["role"] = ServerText(servers, new_master);
    diff["changes"] = DefaultDiff(diff["old"], diff["new"]);
    return diff;
}

StatementRows TranslateClusterRoleEdit(std::string const& statement,
                                       Json::Value const& /*old_info*/,
                                       Json::Value const& /*params*/, Json::Value const& diff,
                                       Json::Value const& /*body*/) {
    if (statement != kClusterChanged) {
        return Ignore();
    }
    return MuggleTranslate(diff["old"], diff["new"], diff["changes"], MakeTranslators(kSettings));
}

}  // namespace serverlog::log::adminlog::serverlist
