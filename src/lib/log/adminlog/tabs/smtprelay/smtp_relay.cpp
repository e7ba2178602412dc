#include "log/adminlog/tabs/smtprelay/smtp_relay.h"

#include "log/adminlog/tabs/common/edited_list.h"
#include "log/adminlog/tabs/smtprelay/templates.h"

namespace serverlog::log::adminlog::smtprelay {

namespace {

constexpr Word kLists[] = {
    {"network", Label{"relay", "trust_list"}},
    {"domain", Label{"relay", "domain_list"}},
};

}  // namespace

StatementRows TranslateEdit(std::string const& statement, Json::Value const& /*old_info*/,
                            Json::Value const& params, Json::Value const& /*diff*/,
                            Json::Value const& /*body*/) {
    return statement == kListEdited ? EditedListRow(params, kLists) : Ignore();
}

}  // namespace serverlog::log::adminlog::smtprelay
