#pragma once

/// The statement templates that the functions of the BCC page know.
namespace serverlog::log::adminlog::bcc {

inline constexpr char kCreated[] = "BCC rule %0% for domain %1% was created.";
inline constexpr char kDeleted[] = "BCC rule %0% for domain %1% was deleted.";
inline constexpr char kExported[] = "BCC rule was exported through %0% of domain %1%.";
inline constexpr char kImported[] = "%0% was imported as %1% for domain %2% BCC settings.";
inline constexpr char kSettingChanged[] =
    "%0% of bcc rule %1% for domain %2% was changed from %3% to %4%.";
inline constexpr char kRenamed[] = "BCC rule %0% for domain %1% was changed to %2%.";

}  // namespace serverlog::log::adminlog::bcc
