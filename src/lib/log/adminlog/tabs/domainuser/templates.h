#pragma once

/// The statement templates that the functions of the domain's user page know.
namespace serverlog::log::adminlog::domainuser {

inline constexpr char kUserAdded[] = "User %0% was added to domain %1%.";
inline constexpr char kGroupAdded[] = "Group %0% was added to domain %1%.";
inline constexpr char kUserDeleted[] = "User %0% was deleted from domain %1%.";
inline constexpr char kAddressAdded[] = "Email address %0% of user %1% in domain %2% was added.";
inline constexpr char kAddressDeleted[] =
    "Email address %0% of user %1% in domain %2% was deleted.";
inline constexpr char kSettingChanged[] =
    "%0% of user %1% in domain %2% was changed from %3% to %4%.";

}  // namespace serverlog::log::adminlog::domainuser
