#pragma once

/// The statement templates that the functions of the licence page know.
namespace serverlog::log::adminlog::license {

inline constexpr char kActivated[] = "License %0% was activated.";
inline constexpr char kMemberActivated[] = "Account %0% was activated.";
inline constexpr char kMemberDeactivated[] = "Account %0% was deactivated.";

}  // namespace serverlog::log::adminlog::license
