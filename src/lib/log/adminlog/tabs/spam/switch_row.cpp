#include "log/adminlog/tabs/spam/switch_row.h"

#include "log/adminlog/toolkit/formatting.h"

namespace serverlog::log::adminlog::spam {

StatementRow SwitchRow(std::string const& name, Json::Value const& entry, std::string const& key) {
    std::string const now = IsEnable(key, entry);
    return {name, IsBoolEnable(now != IsBoolEnable(true)), now};
}

}  // namespace serverlog::log::adminlog::spam
