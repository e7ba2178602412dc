#pragma once

/// The statement templates that the functions of the SMTP page know.
namespace serverlog::log::adminlog::smtpgeneral {

inline constexpr char kPostmasterAdded[] = "%0%: %1% was added to postmaster.";
inline constexpr char kPostmasterRemoved[] = "%0%: %1% was removed from postmaster.";

}  // namespace serverlog::log::adminlog::smtpgeneral
