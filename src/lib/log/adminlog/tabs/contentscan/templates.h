#pragma once

/// The statement templates that the functions of the content scan page know.
namespace serverlog::log::adminlog::contentscan {

inline constexpr char kTypeCreated[] = "Attachment filter type %0% was created.";
inline constexpr char kTypeDeleted[] = "Attachment filter type %0% was deleted.";

}  // namespace serverlog::log::adminlog::contentscan
