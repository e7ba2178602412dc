#pragma once

/// The statement templates that the functions of the spam page know.
namespace serverlog::log::adminlog::spam {

inline constexpr char kServerCreated[] = "DNSBL server %0% was created.";
inline constexpr char kServerDeleted[] = "DNSBL server %0% was deleted.";
inline constexpr char kServerChanged[] = "%0% of DNSBL server %1% was changed from %2% to %3%.";

inline constexpr char kGreylistCreated[] = "Greylist %0% %1% was created.";
inline constexpr char kGreylistDeleted[] = "Greylist %0% %1% was deleted.";
inline constexpr char kGreylistDefaultChanged[] =
    "The default Greylist setting, %0%, was changed from %1% to %2%.";
inline constexpr char kGreylistChanged[] = "%0% of Greylist %1% %2% was changed from %3% to %4%.";

inline constexpr char kKeywordCreated[] = "Keyword filter %0% was created for group %1%.";
inline constexpr char kKeywordDeleted[] = "Keyword filter %0% for group %1% was deleted.";
inline constexpr char kKeywordChanged[] =
    "%0% of keyword filter %1% for group %2% was changed from %3% to %4%.";

inline constexpr char kKeyGroupCreated[] = "Keyword filter group %0% was created.";
inline constexpr char kKeyGroupDeleted[] = "Keyword filter group %0% was deleted.";
inline constexpr char kKeyGroupChanged[] = "Keyword filter group %0% was changed from %1% to %2%.";
inline constexpr char kKeyGroupRenamed[] = "Keyword filter group name was changed from %0% to %1%.";

inline constexpr char kFilterCreated[] = "Address filter rule: %0% %1%; action: %2% was created.";
inline constexpr char kFilterDeleted[] = "Address filter rule: %0% %1%; action: %2% was deleted.";
inline constexpr char kFilterChanged[] =
    "Address filter rule: %0% %1%; action: %2% was changed to %3% %4%, action: %5%.";
inline constexpr char kFiltersExported[] = "Address filter rules were exported.";
inline constexpr char kFilterImported[] = "%0%: Address filter %1% was imported.";

inline constexpr char kRuleDeleted[] = "SpamAssassin rule %0% was deleted.";
inline constexpr char kRuleExported[] = "SpamAssassin rule %0% was exported.";
inline constexpr char kRuleImported[] = "SpamAssassin rule %0% was imported.";
inline constexpr char kRuleChanged[] = "SpamAssassin rule %0% was changed from %1% to %2%.";

// "were" for one attachment is on purpose.
inline constexpr char kHamAttachmentDownloaded[] =
    "Attachment %0% of the ham mail sent from %1% with subject %2% were downloaded.";
inline constexpr char kSpamAttachmentDownloaded[] =
    "Attachment %0% of the spam mail sent from %1% with subject %2% was downloaded.";
inline constexpr char kHamAttachmentsDownloaded[] =
    "All attachments of the ham mail sent from %0% with subject %1% were downloaded.";
inline constexpr char kSpamAttachmentsDownloaded[] =
    "All attachments of the spam mail sent from %0% with subject %1% were downloaded.";
inline constexpr char kAllLearnedAsHam[] =
    "All mails matching search condition %0% were learned as ham.";
inline constexpr char kAllLearnedAsSpam[] =
    "All mails matching search condition %0% were learned as spam.";
inline constexpr char kHamDeleted[] = "%0% ham mails were deleted.";
inline constexpr char kSpamDeleted[] = "%0% spam mails were deleted.";
inline constexpr char kLearnedAsHam[] = "%0% mails were learned as ham.";
inline constexpr char kLearnedAsSpam[] = "%0% mails were learned as spam.";

}  // namespace serverlog::log::adminlog::spam
