#pragma once

/// The statement templates that the functions of the domain's group page know.
namespace serverlog::log::adminlog::domaingroup {

inline constexpr char kDeleted[] = "Group %0% was deleted from domain %1%.";
inline constexpr char kSettingChanged[] =
    "%0% of group %1% in domain %2% was changed from %3% to %4%.";

}  // namespace serverlog::log::adminlog::domaingroup
