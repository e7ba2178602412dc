#include "trace/found_mails.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "trace/brackets.h"
#include "trace/words.h"

namespace serverlog::program {

namespace {

using merodbquery::Condition;

constexpr std::int64_t kSecondsBefore = 3600;
constexpr std::int64_t kSecondsBehind = 60;

// Far below the number of values that SQLite takes in one statement.
constexpr std::size_t kMostMails = 1000;

void Insert(std::set<std::string>& texts, const std::string& text) {
    // The empty text stands for something unknown, or for the sender of any bounce.
    if (!text.empty()) {
        texts.insert(text);
    }
}

Condition Within(const DateSpan& span, std::int64_t before = 0, std::int64_t behind = 0) {
    return Condition::ConditionFactory("date", ">=", span.first - before) &&
           Condition::ConditionFactory("date", "<=", span.last + behind);
}

}  // namespace

void FoundMails::Mail::Add(const record::MailLog& row) {
    Insert(senders, row.mail_from);
    Insert(recipients, row.mail_to);
    Insert(recipients, row.ori_mail_to);
    span.Include(row.date);
}

void FoundMails::Add(const record::MailLog& row) {
    const QueueId queue_id = {row.host, row.queue_id};
    // The log began in the middle of the mail, or the mail came without; Postfix writes "<>" then.
    const std::string message_id = WithoutBrackets(row.message_id);
    Mail& mail = message_id.empty() ? nameless_[queue_id] : mails_[row.message_id];
    mail.Add(row);
    AddQueueId(queue_id, row.date);
    Insert(ids_, message_id);
    if (mails_.size() + nameless_.size() > kMostMails) {
        throw TooManyMails("more than " + std::to_string(kMostMails) + " mails had this id");
    }
}

void FoundMails::AddQueueId(const QueueId& queue_id, std::int64_t date) {
    queue_ids_[queue_id].Include(date);
    Insert(ids_, queue_id.id);
}

Condition FoundMails::MailRows() const {
    Condition rows = Condition::Null();
    for (const auto& [message_id, mail] : mails_) {
        rows = rows || Condition::ConditionFactory("message_id", "=", message_id);
    }
    for (const auto& [queue_id, mail] : nameless_) {
        // The dates have an index.
        rows = rows ||
               (Within(mail.span) && Condition::ConditionFactory("queue_id", "=", queue_id.id) &&
                Condition::ConditionFactory("host", "=", queue_id.host));
    }
    return rows;
}

Condition FoundMails::SecurityRows() const {
    Condition rows = Condition::Null();
    for (const Mail* mail : AllMails()) {
        rows = rows || Within(mail->span, kSecondsBefore, kSecondsBehind);
    }
    return rows;
}

bool FoundMails::Concerns(const record::SecurityLog& row) const {
    const std::vector<const Mail*> mails = AllMails();
    return std::any_of(mails.begin(), mails.end(), [&](const Mail* mail) {
        const bool is_in_time = mail->span.IsNear(row.date, kSecondsBefore, kSecondsBehind);
        const bool is_between =
            mail->senders.count(row.sender) > 0 && mail->recipients.count(row.recipient) > 0;
        return is_in_time && (is_between || Mentions(row.event));
    });
}

bool FoundMails::Mentions(const std::string& event) const {
    return AnyWord(event,
                   [this](std::string_view word) { return ids_.count(std::string(word)) > 0; });
}

std::vector<const FoundMails::Mail*> FoundMails::AllMails() const {
    std::vector<const Mail*> mails;
    for (const auto& entry : mails_) {
        mails.push_back(&entry.second);
    }
    for (const auto& entry : nameless_) {
        mails.push_back(&entry.second);
    }
    return mails;
}

}  // namespace serverlog::program
