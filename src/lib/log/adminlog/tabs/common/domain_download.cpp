#include "log/adminlog/tabs/common/domain_download.h"

#include "log/adminlog/tabs/domain/domain_info.h"

namespace serverlog::log::adminlog {

Json::Value DomainDownload(Json::Value const& params) {
    Json::Value info = domain::ThisDomainInfo(params);
    info["force_log"] = true;
    return info;
}

}  // namespace serverlog::log::adminlog
