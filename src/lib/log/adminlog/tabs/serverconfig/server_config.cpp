#include "log/adminlog/tabs/serverconfig/server_config.h"

#include "log/adminlog/tabs/serverconfig/templates.h"
#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog::serverconfig {

StatementRows TranslateImport(std::string const& statement, Json::Value const& /*old_info*/,
                              Json::Value const& params, Json::Value const& /*diff*/,
                              Json::Value const& /*body*/) {
    if (statement != kExchangeConfigImported) {
        return Ignore();
    }
    return {{GetKeyVal(params, "file")}};
}

}  // namespace serverlog::log::adminlog::serverconfig
