#include "log/adminlog/tabs/service/network_interface.h"

#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/tabs/service/interface_display.h"
#include "log/adminlog/toolkit/comparing.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/tolerant_reading.h"
#include "utils/merosdk/pppoe.h"

#include <mero/mail_node_cluster.h>

namespace serverlog::log::adminlog::service {

namespace {

constexpr Setting kSettings[] = {
    {Label{"common", "bound_network_interface"}, "interface", InterfaceDisplay}};

}  // namespace

Json::Value InterfaceInfo(Json::Value const& /*params*/) {
    MERO::POSTCUBE_SERVER::MEROMailNodeCluster const cluster;
    Json::Value info;
    info["interface"] = cluster.getHostIF();
    info["ip"] = cluster.getHostIP();
    return info;
}

Json::Value DiffInterface(Json::Value& old_info, Json::Value& params) {
    if (TryGetKeyVal(params, "interface") == "pppoe") {
        std::string const name = utils::PPPoeInterface();
        if (!name.empty()) {
            params["interface"] = name;
        }
    }
    return DefaultDiff(old_info, params);
}

StatementRows TranslateEditInterface(std::string const& statement, Json::Value const& old_info,
                                     Json::Value const& params, Json::Value const& diff,
                                     Json::Value const& /*body*/) {
    if (statement != kSettingChanged) {
        return Ignore();
    }
    return MuggleTranslate(old_info, params, diff, MakeTranslators(kSettings));
}

}  // namespace serverlog::log::adminlog::service
