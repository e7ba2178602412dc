#pragma once

/// The statement templates that the functions of the domain tabs know. The operations table and the
/// functions both take them from here.
namespace serverlog::log::adminlog::domain {

inline constexpr char kAdditionalCreated[] = "Additional domain %0% of domain %1% was created.";
inline constexpr char kAdditionalDeleted[] = "Additional domain %0% was deleted from domain %1%.";
inline constexpr char kAdditionalChanged[] =
    "Additional domain %0% of domain %1% was changed to %2%.";
inline constexpr char kDeleted[] = "Domain %0% was deleted.";
inline constexpr char kDkimKeyGenerated[] = "DKIM %0% of domain %1% was re-generated.";
inline constexpr char kSettingChanged[] = "%0% of domain %1% was changed from %2% to %3%.";
inline constexpr char kPrimarySet[] = "Domain %0% was set as the primary domain.";
inline constexpr char kAdvancedSettingChanged[] =
    "%0% at advanced settings of domain %1% was changed from %2% to %3%.";
inline constexpr char kUsageLimitChanged[] =
    "%0% of usage limit for domain %1% was changed from %2% to %3%.";
inline constexpr char kUsageDataCleared[] = "Data usage of %0% in domain %1% was cleared.";
inline constexpr char kAllUsageDataCleared[] = "All data usage in domain %0% was cleared.";

}  // namespace serverlog::log::adminlog::domain
