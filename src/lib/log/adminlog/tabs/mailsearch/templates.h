#pragma once

/// The statement templates that the functions of the mail search know.
namespace serverlog::log::adminlog::mailsearch {

inline constexpr char kMailsDeleted[] = "%0% mails of search task %1% were deleted.";
inline constexpr char kMailsExported[] = "%0% mails of search task %1% were exported.";
inline constexpr char kAttachmentDownloaded[] =
    "Attachment %0% of mail %1% sent to %2% on %3%, was downloaded.";
inline constexpr char kMailDownloaded[] = "Mail %0%, sent to %1% on %2%, was downloaded.";
inline constexpr char kConditionsEdited[] = "Search conditions of task %0% were edited.";
inline constexpr char kUsersEdited[] = "Target users of search task %0% were edited.";
inline constexpr char kRenamed[] = "Search task name was changed from %0% to %1%.";

}  // namespace serverlog::log::adminlog::mailsearch
