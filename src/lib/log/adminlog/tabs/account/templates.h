#pragma once

/// The statement templates that the functions of the account page know.
namespace serverlog::log::adminlog::account {

inline constexpr char kQuotaCleared[] = "The mailbox quota for %0% %1% was cleared.";
inline constexpr char kQuotaSet[] = "The mailbox quota for %0% %1% was set to %2%.";
inline constexpr char kRemainingCapacitySet[] =
    "The remaining capacity notification for %0% %1% was set to %2%.";
inline constexpr char kDefaultQuotaSet[] = "The default mailbox quota was set to %0%.";
inline constexpr char kDefaultRemainingCapacitySet[] =
    "The default remaining capacity notification was set to %0%.";
inline constexpr char kMailboxCleared[] = "The mailbox of %0% %1% was cleared.";

}  // namespace serverlog::log::adminlog::account
