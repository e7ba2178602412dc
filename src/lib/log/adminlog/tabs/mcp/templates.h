#pragma once

/// The statement templates that the functions of the MCP page know. Those for downloads from its
/// quarantine stand with the antivirus page, whose functions they use.
namespace serverlog::log::adminlog::mcp {

inline constexpr char kBounceTemplateEdited[] = "%0% at MCP template settings was edited.";
inline constexpr char kRuleCreated[] = "MCP rule %0% was created.";
inline constexpr char kRuleDeleted[] = "MCP rule %0% was deleted.";
inline constexpr char kRuleChanged[] = "%0% of MCP rule %1% was changed from %2% to %3%.";
inline constexpr char kRuleRenamed[] = "MCP rule name %0% was changed to %1%.";
inline constexpr char kMailDeleted[] =
    "Mail from %0% with subject %1% received on %2% was deleted from MCP quarantine.";
inline constexpr char kMailReleased[] =
    "Mail from %0% with subject %1% received on %2% was released from MCP quarantine.";

}  // namespace serverlog::log::adminlog::mcp
