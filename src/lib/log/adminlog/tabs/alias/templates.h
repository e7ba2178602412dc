#pragma once

/// The statement templates that the functions of the alias page know.
namespace serverlog::log::adminlog::alias {

inline constexpr char kDeleted[] = "Alias %0% was deleted from domain %1%.";
inline constexpr char kMemberDeleted[] = "%0% %1% was deleted from alias %2% of domain %3%.";
inline constexpr char kExported[] = "Domain %0% alias was exported.";
inline constexpr char kImported[] = "%0% was imported into domain %1% alias.";
inline constexpr char kAdded[] = "Alias %0% was added to domain %1%.";
inline constexpr char kMemberAdded[] = "%0% %1% was added to alias %2% of domain %3%.";
inline constexpr char kRenamed[] = "Alias %0% in domain %1% was changed to %2%.";

}  // namespace serverlog::log::adminlog::alias
