#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mail_events/counts.h"
#include "mail_events/mail_event.h"
#include "mail_events/mails_in_flight.h"
#include "mail_events/sip_hash.h"

namespace serverlog::program {

/// What lines gave that are not stored yet.
struct MailEventBatch {
    std::vector<MailEvent> mail;
    std::vector<SecurityEvent> security;
    Counts counts;                 ///< of lines; those of rows are not looked at
    std::int64_t newest_line = 0;  ///< stamp of the last line; 0 for none
};

/// The state file and the two stores as the collector of mail events writes to them: opened when
/// they are first needed, and again after any trouble and when one of the files went away.
///
/// Whatever fails throws what MailEventFiles throws, or std::runtime_error with SQLite's reason;
/// the files are as they were then. Call it again.
class MailEventStore : public MailsInFlight::Source {
 public:
    /// How long what is known of a mail is kept, and for how many mails at most.
    static constexpr std::int64_t kLongestFlight = 7L * 86400;
    static constexpr std::int64_t kMostMails = 100000;

    MailEventStore();
    ~MailEventStore() override;
    MailEventStore(const MailEventStore&) = delete;
    MailEventStore& operator=(const MailEventStore&) = delete;

    /// The key of the fingerprints.
    SipKey Key();

    std::optional<Mail> Load(std::string_view host, std::string_view queue_id) override;
    std::optional<std::string> FindMessage(std::string_view host,
                                           std::string_view message_id) override;

    /// Stores the rows that were not stored before, what has changed about the mails, and the
    /// counts, all or nothing.
    ///
    /// @return how many rows of each kind were new, nothing else
    Counts Commit(const MailEventBatch& batch, const MailsInFlight& mails);

 private:
    struct Open;

    /// Calls `action` with the open files. After a failure they are closed.
    template <class Action>
    auto With(Action&& action);

    SipKey key_;
    std::unique_ptr<Open> open_;
};

}  // namespace serverlog::program
