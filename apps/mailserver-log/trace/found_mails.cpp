#include "trace/found_mails.h"

#include <algorithm>
#include <cstddef>

#include "process/failure.h"
#include "trace/any_of.h"

namespace serverlog::program {

namespace {

using merodbquery::Condition;

// Of one kind in a statement. Far below what SQLite takes.
constexpr std::size_t kMostValues = 1000;

void Insert(std::set<std::string>& texts, const std::string& text) {
    // The empty text stands for something unknown, or for the sender of any bounce.
    if (!text.empty()) {
        texts.insert(text);
    }
}

}  // namespace

void FoundMails::Span::Include(std::int64_t first, std::int64_t last) {
    begin = std::min(begin, first);
    end = std::max(end, last);
}

void FoundMails::Add(const record::MailLog& row) {
    has_nameless_ = has_nameless_ || row.message_id.empty();
    Insert(message_ids_, row.message_id);
    Mail& mail = mails_[row.message_id.empty() ? row.queue_id : row.message_id];
    Insert(mail.senders, row.mail_from);
    Insert(mail.recipients, row.mail_to);
    Insert(mail.recipients, row.ori_mail_to);
    mail.span.Include(row.date - kSecondsBefore, row.date + kSecondsBehind);
    if (mails_.size() > kMostValues) {
        throw Failure("more than " + std::to_string(kMostValues) +
                      " mails had this id; narrow it down with --since and --until");
    }
}

Condition FoundMails::ByMessageId() const {
    return AnyOf("message_id", message_ids_);
}

Condition FoundMails::SecurityRows() const {
    std::set<std::string> senders;
    Span span;
    for (const auto& [id, mail] : mails_) {
        senders.insert(mail.senders.begin(), mail.senders.end());
        span.Include(mail.span.begin, mail.span.end);
    }
    if (senders.empty()) {
        return Condition::Null();
    }
    const Condition in_time = Condition::ConditionFactory("date", ">=", span.begin) &&
                              Condition::ConditionFactory("date", "<=", span.end);
    // A mailing list may send each copy of a mail from an address of its own.
    return senders.size() > kMostValues ? in_time : in_time && AnyOf("sender", senders);
}

bool FoundMails::Concerns(const record::SecurityLog& row) const {
    return std::any_of(mails_.begin(), mails_.end(), [&row](const auto& entry) {
        const Mail& mail = entry.second;
        return mail.senders.count(row.sender) > 0 && mail.recipients.count(row.recipient) > 0 &&
               mail.span.begin <= row.date && row.date <= mail.span.end;
    });
}

}  // namespace serverlog::program
