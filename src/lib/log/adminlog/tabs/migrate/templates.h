#pragma once

/// The statement templates that the functions of the migration page know.
namespace serverlog::log::adminlog::migrate {

inline constexpr char kTaskCreated[] = "Migration task %0% was created.";
inline constexpr char kTaskChanged[] = "%0% of migration task %1% was changed from %2% to %3%.";
inline constexpr char kTaskRenamed[] = "Migration task name %0% was changed to %1%.";
inline constexpr char kTaskDeleted[] = "Migration task %0% was deleted.";
inline constexpr char kTaskStarted[] = "Migration task %0% started.";
inline constexpr char kTaskStopped[] = "Migration task %0% stopped.";
inline constexpr char kLogExported[] = "Log of the migration task %0% was exported.";
inline constexpr char kUserDeleted[] = "User %0% of migration task %1% was deleted.";
inline constexpr char kUsersImported[] = "%0% of migration task %1% was imported.";
inline constexpr char kFilterChanged[] =
    "%0% of filter for migration task %1% was changed from %2% to %3%.";
inline constexpr char kKeywordAdded[] =
    "%0%: %1% was added to the keyword filter for migration task %2%.";
inline constexpr char kKeywordRemoved[] =
    "%0%: %1% was removed from the keyword filter for migration task %2%.";
inline constexpr char kSuccessNotifyChanged[] =
    "%0% of success notification for migration task %1% was changed from %2% to %3%.";
inline constexpr char kFailureNotifyChanged[] =
    "%0% of failure notification for migration task %1% was changed from %2% to %3%.";

}  // namespace serverlog::log::adminlog::migrate
