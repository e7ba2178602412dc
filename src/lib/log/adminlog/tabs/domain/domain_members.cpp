#include "log/adminlog/tabs/domain/domain_members.h"

#include "log/adminlog/tabs/domain/domain_info.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"
#include "utils/merosdk/run_api.h"

namespace serverlog::log::adminlog::domain {

Json::Value DomainWithMembers(Json::Value const& params, std::string const& api,
                              std::string const& list) {
    if (!params.isObject() || !params.isMember("domain_id")) {
        return Json::Value();
    }
    Json::Value info = ThisDomainInfo(params);
    Json::Value query;
    query["domain_id"] = params["domain_id"];
    query["action"] = "enum";
    query["query"] = "";
    query["offset"] = 0;
    query["limit"] = -1;
    Json::Value const data = utils::CallApiGetData(api, "list", query, 1);
    info[list] = IndexedReference(TryGetObjectVal(data, list), "id");
    return info;
}

}  // namespace serverlog::log::adminlog::domain
