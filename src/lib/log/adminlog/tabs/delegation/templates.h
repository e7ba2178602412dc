#pragma once

/// The statement templates that the functions of the delegation page know.
namespace serverlog::log::adminlog::delegation {

inline constexpr char kDeleted[] = "Delegation policy %0% was deleted.";
inline constexpr char kSettingChanged[] =
    "%0% of delegation policy %1% was changed from %2% to %3%.";
inline constexpr char kMembersEdited[] = "Target users of delegation policy %0% were edited.";
inline constexpr char kRenamed[] = "Delegation policy %0% was changed to %1%.";

}  // namespace serverlog::log::adminlog::delegation
