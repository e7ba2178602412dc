#include "log/adminlog/tabs/domain/domain_members.h"

#include "log/adminlog/tabs/domain/domain_info.h"
#include "log/adminlog/toolkit/old_state.h"

namespace serverlog::log::adminlog::domain {

Json::Value DomainWithMembers(Json::Value const& params, char const* api, char const* list) {
    if (!params.isObject() || !params.isMember("domain_id")) {
        return Json::Value();
    }
    Json::Value info = ThisDomainInfo(params);
    Json::Value query = WholeListQuery();
    query["domain_id"] = params["domain_id"];
    query["action"] = "enum";
    query["query"] = "";
    info[list] = IndexedEntries(LoadOldState(api, "list", query)[list], "id");
    return info;
}

}  // namespace serverlog::log::adminlog::domain
