#include "log/adminlog/tabs/mcp/mcp_settings.h"

#include "log/adminlog/tabs/common/templates.h"
#include "log/adminlog/tabs/mcp/templates.h"
#include "log/adminlog/toolkit/formatting.h"
#include "log/adminlog/toolkit/label.h"
#include "log/adminlog/toolkit/muggle_translate.h"
#include "log/adminlog/toolkit/number_text.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/settings_page.h"
#include "log/adminlog/toolkit/tolerant_reading.h"

namespace serverlog::log::adminlog::mcp {

namespace {

constexpr char kApi[] = "MERO.PostCubeServer.Security.MCP";
constexpr char kAction[] = "mcp_radio_action";

constexpr char const* kChoices[] = {"delete", "store", "deliver"};

constexpr Word kActions[] = {
    {"delete", Label{"mcp", "mcp_action_delete"}},
    {"store", Label{"mcp", "mcp_action_store"}},
    {"deliver", Label{"mcp", "mcp_action_deliver"}},
};

constexpr Setting kSettings[] = {
    {Label{"mcp", "mcp_enable"}, "enable", IsEnable},
    {Label{"mcp", "mcp_threshold"}, "mcp_threshold", NumberText},
    {Label{"mcp", "mcp_action_bounce"}, "enable_bounce", IsEnable},
    // No blank on this page, on purpose.
    {Label{"mcp", "mcp_action_forward"}, "enable_forward", IsEnable, kStatusOfWithoutBlank},
    {Label{"mcp", "mcp_action_forward"}, "forward_to", nullptr},
    {Label{"mcp", "action_select_desc"}, kAction, ActionText},
};

constexpr Setting kBounceTemplate[] = {
    {Label{"mcp", "bounce_admin_addr"}, "admin_addr", nullptr},
    {Label{"mcp", "mcp_header_subject"}, "subject", nullptr},
    {Label{"mcp", "bounce_content"}, "content", nullptr},
};

bool IsTrue(Json::Value const& value) {
    return value.isConvertibleTo(Json::booleanValue) && value.asBool();
}

}  // namespace

Json::Value McpInfo(Json::Value const& /*params*/) {
    Json::Value info = LoadOldState(kApi, "get");
    std::string action;
    for (std::string const choice : kChoices) {
        if (IsTrue(TryGetObjectVal(info, "enable_" + choice))) {
            action = choice;
        }
    }
    info[kAction] = action;
    return info;
}

Json::Value BounceTemplateInfo(Json::Value const& /*params*/) {
    return LoadOldState(kApi, "get_bounce_template");
}

std::string ActionText(std::string const& member, Json::Value const& object) {
    return WordText(GetKeyVal(object, member), kActions);
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    if (statement != kSettingChanged) {
        return Ignore();
    }
    return MuggleTranslate(old_info, params, diff, MakeTranslators(kSettings));
}

StatementRows TranslateBounceTemplateEdit(std::string const& statement, Json::Value const& old_info,
                                          Json::Value const& params, Json::Value const& diff,
                                          Json::Value const& /*body*/) {
    if (statement != kBounceTemplateEdited) {
        return Ignore();
    }
    return ChangedLabels(old_info, params, diff, MakeTranslators(kBounceTemplate));
}

}  // namespace serverlog::log::adminlog::mcp
