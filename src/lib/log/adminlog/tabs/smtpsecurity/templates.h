#pragma once

/// The statement templates that the functions of the SMTP security page know.
namespace serverlog::log::adminlog::smtpsecurity {

inline constexpr char kRuleCreated[] = "%0%: %1% was created.";
inline constexpr char kRuleDeleted[] = "%0%: %1% was deleted.";
inline constexpr char kRuleChanged[] = "%0% of %1%: %2% was changed from %3% to %4%.";

}  // namespace serverlog::log::adminlog::smtpsecurity
