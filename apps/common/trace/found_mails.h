#pragma once

#include <mailserver-log/record/emaillog/mail_log.h>
#include <mailserver-log/record/securitylog/security_log.h>
#include <merodbquery/condition.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "process/failure.h"
#include "trace/date_span.h"
#include "trace/queue_id.h"

namespace serverlog::program {

/// An id belongs to more mails than one search takes. A shorter time has fewer.
class TooManyMails : public Failure {
 public:
    using Failure::Failure;
};

/// The mails that were found by an id, and what is known of them for finding more.
///
/// A row of the security store has no column for an id. It concerns a mail if it names an id of it
/// in its event, or has a sender and a recipient of it: from an hour before the first row of the
/// mail, for a server that was turned away tries again within that time, to a minute behind the
/// last one.
class FoundMails {
 public:
    /// Adds a row; one that was added before changes nothing. Throws TooManyMails when that makes
    /// too many.
    void Add(const record::MailLog& row);

    /// Adds a queue id of one of these mails, which had it on that date.
    void AddQueueId(const QueueId& queue_id, std::int64_t date);

    /// The queue ids and when they belonged to these mails. Others have them at other times.
    const std::map<QueueId, DateSpan>& QueueIds() const { return queue_ids_; }

    /// The number of message ids. Where it stays the same no further mail was found.
    std::size_t CountOfMessageIds() const { return mails_.size(); }

    /// All rows that were added, and what else has their message ids. Not set when there is none.
    merodbquery::Condition MailRows() const;

    /// Rows of the security store, among them all that concern these mails. Not set when none can.
    merodbquery::Condition SecurityRows() const;

    /// Whether this one does.
    bool Concerns(const record::SecurityLog& row) const;

 private:
    struct Mail {
        std::set<std::string> senders;
        std::set<std::string> recipients;  // original ones as well
        DateSpan span;

        void Add(const record::MailLog& row);
    };

    bool Mentions(const std::string& event) const;
    std::vector<const Mail*> AllMails() const;

    std::map<std::string, Mail> mails_;  // by message id
    std::map<QueueId, Mail> nameless_;   // those without
    std::map<QueueId, DateSpan> queue_ids_;
    std::set<std::string> ids_;  // as a log line names them
};

}  // namespace serverlog::program
