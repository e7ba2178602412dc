#pragma once

#include <mailserver-log/record/emaillog/mail_log.h>
#include <mailserver-log/record/securitylog/security_log.h>
#include <merodbquery/condition.h>

#include <cstdint>
#include <limits>
#include <map>
#include <set>
#include <string>

namespace serverlog::program {

/// The mails that were found by an id, and what their rows tell about where else to look for them.
///
/// A mail that passed a content filter has a second queue id, and the same message id. A row of the
/// security store has no id: it concerns a mail if it has a sender and a recipient of it, from an
/// hour before the first row of the mail, for a server that was turned away tries again within that
/// time, to a minute behind the last one.
class FoundMails {
 public:
    /// Adds a row; one that was added before changes nothing. Throws Failure when that makes too
    /// many mails for one search.
    void Add(const record::MailLog& row);

    /// All rows of the mails that have a message id. Not set when there is none.
    merodbquery::Condition ByMessageId() const;

    /// Whether a mail has none, since the log began or was lost in the middle of it.
    bool HasNameless() const { return has_nameless_; }

    /// Rows of the security store, among them all that concern these mails. Not set when none can.
    merodbquery::Condition SecurityRows() const;

    /// Whether this one does.
    bool Concerns(const record::SecurityLog& row) const;

 private:
    static constexpr std::int64_t kSecondsBefore = 3600;
    static constexpr std::int64_t kSecondsBehind = 60;

    struct Span {
        void Include(std::int64_t begin, std::int64_t end);

        std::int64_t begin = std::numeric_limits<std::int64_t>::max();
        std::int64_t end = 0;
    };

    struct Mail {
        std::set<std::string> senders;
        std::set<std::string> recipients;  // original ones as well
        Span span;                         // of the events that may concern it
    };

    std::map<std::string, Mail> mails_;  // by message id, those without by queue id
    std::set<std::string> message_ids_;
    bool has_nameless_ = false;
};

}  // namespace serverlog::program
