#pragma once

/// The statement templates that the functions of the authentication page know.
namespace serverlog::log::adminlog::authentication {

inline constexpr char kSenderAdded[] = "IP: %0% Name: %1% was added to DKIM whitelist.";
inline constexpr char kSenderDeleted[] = "IP: %0% Name: %1% was deleted from DKIM whitelist.";
inline constexpr char kSenderChanged[] =
    "%0% of DKIM whitelist IP: %1% Name: %2% was changed from %3% to %4%.";

}  // namespace serverlog::log::adminlog::authentication
