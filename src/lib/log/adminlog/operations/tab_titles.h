#pragma once

#include <cstdint>

namespace serverlog::log::adminlog {

/// Where the title of a tab of the admin log stands in the text files.
struct TabTitle {
    std::int32_t tab_type;  ///< as in TabLog::tab_type
    char const* section;
    char const* key;
    /// In the operating system's texts instead of the mail server's.
    bool is_system_text = false;
};

/// All tabs, by number from 1 without a gap.
inline constexpr TabTitle kTabTitles[] = {
    {1, "search", "mail_search_tab_title"},
    {2, "service", "service"},
    {3, "common", "account"},
    {4, "license", "license_title"},
    {5, "policy", "policy"},
    {6, "delegation", "delegation"},
    {7, "spam", "spam_filter"},
    {8, "security", "anti_virus_title"},
    {9, "security", "auth_tab_title"},
    {10, "security", "content_scan"},
    {11, "mcp", "mcp_title"},
    {12, "smtp", "general"},
    {13, "smtp", "delivery"},
    {14, "relay", "relay_control"},
    {15, "security", "security_title"},
    {16, "maillog", "log"},
    {17, "maillog", "log_management"},
    {18, "maillog", "log_file_list"},
    {19, "report", "report_title"},
    {20, "queue", "queue_name"},
    {21, "domain", "domain"},
    {22, "common", "user"},
    {23, "mobile", "menu_group", true},
    {24, "alias", "alias"},
    {25, "bcc", "bcc_title"},
    {26, "domain", "usage_limit"},
    {27, "disclaimer", "disclaimer"},
    {28, "overview", "mail_monitor"},
    {29, "common", "server_list"},
    {30, "overview", "mail_migration"},
    {31, "migration", "migrate_config_title"},
    {32, "postcube", "postcube"},
};

}  // namespace serverlog::log::adminlog
