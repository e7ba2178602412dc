#include "log/adminlog/toolkit/statement_rows.h"

#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog {

StatementRows Ignore() {
    return {};
}

StatementRows NoReplace() {
    return {StatementRow()};
}

StatementRows IntuitionNewName(std::string const& /*statement*/, Json::Value const& /*old_info*/,
                               Json::Value const& params, Json::Value const& /*diff*/,
                               Json::Value const& /*body*/) {
    return {{GetKeyVal(params, "name")}};
}

StatementRows IntuitionPastName(std::string const& /*statement*/, Json::Value const& old_info,
                                Json::Value const& /*params*/, Json::Value const& /*diff*/,
                                Json::Value const& /*body*/) {
    return {{GetKeyVal(old_info, "name")}};
}

}  // namespace serverlog::log::adminlog
