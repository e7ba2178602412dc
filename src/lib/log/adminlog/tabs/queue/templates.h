#pragma once

/// The statement templates that the functions of the queue page know.
namespace serverlog::log::adminlog::queue {

inline constexpr char kMailDeleted[] = "Mail from %0% sent to %1% on %2% was deleted.";
inline constexpr char kMailResent[] = "Mail from %0% sent to %1% on %2% was resent.";

}  // namespace serverlog::log::adminlog::queue
