#include "log/adminlog/tabs/serverlist/server_list.h"

#include "log/adminlog/tabs/serverlist/templates.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog::serverlist {

namespace {

constexpr Setting kSettings[] = {
    {Label{"create_wizard", "mail_system_ip"}, "balancer_address", nullptr},
    {Label{"security", "subnet_mask"}, "balancer_netmask", nullptr},
};

}  // namespace

Json::Value ClusterInfo(Json::Value const& /*params*/) {
    return LoadOldState("MERO.PostCubeServer.Cluster", "get_balancer_info");
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    if (statement != kClusterChanged) {
        return Ignore();
    }
    return MuggleTranslate(old_info, params, diff, MakeTranslators(kSettings));
}

StatementRows TranslateAdd(std::string const& statement, Json::Value const& /*old_info*/,
                           Json::Value const& params, Json::Value const& /*diff*/,
                           Json::Value const& /*body*/) {
    if (statement != kServerAdded) {
        return Ignore();
    }
    Json::Value const server = GetObjectVal(params, "member_info");
    Json::Value const cluster = GetObjectVal(params, "balancer_info");
    return {{GetKeyVal(server, "server"), GetKeyVal(server, "volume"),
             GetKeyVal(cluster, "balancer_address")}};
}

StatementRows TranslateDel(std::string const& statement, Json::Value const& /*old_info*/,
                           Json::Value const& params, Json::Value const& /*diff*/,
                           Json::Value const& /*body*/) {
    if (statement != kServerRemoved) {
        return Ignore();
    }
    return {{GetKeyVal(params, "server")}};
}

}  // namespace serverlog::log::adminlog::serverlist
