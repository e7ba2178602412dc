#pragma once

/// The statement templates that the functions of the antivirus page know. The MCP quarantine uses
/// its download functions, so that its templates for downloads stand here too.
namespace serverlog::log::adminlog::antivirus {

inline constexpr char kTemplateEdited[] = "%0% at antivirus template settings was edited.";
inline constexpr char kMailDeleted[] =
    "The mail on quarantine list from %0% with subject %1% was deleted.";
inline constexpr char kMailReleased[] =
    "The mail on quarantine list from %0% with subject %1% was released.";

// The comma before the verb is on purpose in all four, and "was" for several attachments.
inline constexpr char kAttachmentDownloaded[] =
    "Attachment %0% of mail %1% on quarantine list sent to %2% on %3%, was downloaded.";
inline constexpr char kAttachmentsDownloaded[] =
    "All attachments of mail %0% on quarantine list sent to %1% on %2%, was downloaded.";
inline constexpr char kMcpAttachmentDownloaded[] =
    "Attachment %0% of mail %1% in MCP quarantine sent to %2% on %3%, was downloaded.";
inline constexpr char kMcpAttachmentsDownloaded[] =
    "All attachments of mail %0% in MCP quarantine sent to %1% on %2%, was downloaded.";

}  // namespace serverlog::log::adminlog::antivirus
