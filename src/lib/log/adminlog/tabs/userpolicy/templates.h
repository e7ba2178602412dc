#pragma once

/// The statement templates that the functions of the user policy page know.
namespace serverlog::log::adminlog::userpolicy {

inline constexpr char kDeleted[] = "User policy %0% was deleted.";
inline constexpr char kSettingChanged[] = "%0% of user policy %1% was changed from %2% to %3%.";
inline constexpr char kMembersEdited[] = "Target users of user policy %0% were edited.";
inline constexpr char kRenamed[] = "User policy %0% was changed to %1%.";

}  // namespace serverlog::log::adminlog::userpolicy
