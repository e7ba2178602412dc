#include "mail_events/mail_tracker.h"

#include <mailserver-log/old_log/statistic_log.h>

#include <algorithm>
#include <charconv>
#include <string>
#include <utility>

#include "mail_events/postfix_text.h"
#include "mail_events/row_text.h"

namespace serverlog::program {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

// What local answers for a mail that goes on to another address.
constexpr std::string_view kForwarded = "(forwarded as ";

// The text between `key` and the next comma or blank; empty if there is none.
std::string_view Value(std::string_view text, std::string_view key) {
    const std::size_t at = text.find(key);
    if (at == kNone) {
        return {};
    }
    text.remove_prefix(at + key.size());
    return text.substr(0, text.find_first_of(", "));
}

std::int32_t Size(std::string_view text) {
    std::int32_t size = 0;
    std::from_chars(text.data(), text.data() + text.size(), size);
    return size;
}

// The queue id behind `words`; empty if there is none.
std::string_view QueueIdBehind(std::string_view text, std::string_view words) {
    const std::size_t at = text.rfind(words);
    if (at == kNone) {
        return {};
    }
    text.remove_prefix(at + words.size());
    const std::string_view queue_id = text.substr(0, text.find_first_of("), "));
    return IsQueueId(queue_id) ? queue_id : std::string_view();
}

bool Contains(const std::vector<std::string>& texts, std::string_view text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

std::vector<Recipient>::iterator FindRecipient(Mail& mail, const Recipient& wanted) {
    return std::find_if(
        mail.recipients.begin(), mail.recipients.end(), [&](const Recipient& known) {
            return known.mail_to == wanted.mail_to &&
                   (wanted.ori_mail_to.empty() || known.ori_mail_to == wanted.ori_mail_to);
        });
}

// Gives what the mail knows of this recipient, and forgets it.
Recipient TakeRecipient(Mail& mail, Recipient wanted) {
    const auto known = FindRecipient(mail, wanted);
    if (known == mail.recipients.end()) {
        return wanted;
    }
    Recipient recipient = std::move(*known);
    mail.recipients.erase(known);
    return recipient;
}

// Gives the recipients that were deferred, and forgets them all.
std::vector<Recipient> TakeDeferred(Mail& mail) {
    std::vector<Recipient> deferred;
    for (Recipient& recipient : std::exchange(mail.recipients, {})) {
        if (recipient.is_deferred) {
            deferred.push_back(std::move(recipient));
        }
    }
    if (deferred.empty()) {
        deferred.emplace_back();  // whom it was for was told in lines that are gone
    }
    return deferred;
}

void Remember(Mail& mail, Recipient recipient) {
    const auto known = FindRecipient(mail, recipient);
    if (known == mail.recipients.end()) {
        mail.recipients.push_back(std::move(recipient));
    } else {
        known->is_deferred |= recipient.is_deferred;
    }
}

}  // namespace

/// What became of one recipient: "to=<…>, orig_to=<…>, relay=…, …, status=sent (reason)".
struct MailTracker::Delivery {
    Recipient recipient;
    std::string_view status;
    std::string_view reason;

    static std::optional<Delivery> Read(std::string_view text) {
        std::string_view to;
        std::string_view orig_to;
        if (!TakePrefix(text, "to=") || !TakeAddress(text, to)) {
            return std::nullopt;
        }
        if (TakePrefix(text, ", orig_to=")) {
            TakeAddress(text, orig_to);
        }
        constexpr std::string_view kStatus = ", status=";
        const std::size_t status = text.find(kStatus);
        if (status == kNone) {
            return std::nullopt;
        }
        text.remove_prefix(status + kStatus.size());
        const std::size_t end = std::min(text.find_first_of(" ,"), text.size());
        return Delivery{
            {RowAddress(to), RowAddress(orig_to), false}, text.substr(0, end), text.substr(end)};
    }
};

bool MailTracker::Take(const LogLine& line, Events& events) {
    const std::string_view part = PostfixPart(line.program);
    std::string_view text = line.text;
    std::string_view queue_id;
    if (part.empty() || !TakeQueueId(text, queue_id)) {
        return false;
    }
    if (part == "smtpd") {
        return TakeSmtpd(line, queue_id, text);
    }
    if (part == "cleanup") {
        return TakeCleanup(line, queue_id, text);
    }
    if (part == "qmgr" || part == "postsuper") {
        return TakeManager(line, queue_id, text, events);
    }
    if (part == "smtp") {
        return TakeDelivery(line, queue_id, text, true, events);
    }
    if (part == "lmtp" || part == "local" || part == "virtual" || part == "pipe" ||
        part == "error") {
        return TakeDelivery(line, queue_id, text, false, events);
    }
    if (part == "pickup") {
        return TakePickup(line, queue_id, text);
    }
    return part == "bounce" && TakeBounce(line, queue_id, text);
}

// "client=name[address], orig_queue_id=…, orig_client=name[address]", the latter two from a content
// filter that tells them.
bool MailTracker::TakeSmtpd(const LogLine& line, std::string_view queue_id, std::string_view text) {
    if (!TakePrefix(text, "client=")) {
        return false;
    }
    const std::string_view address = ClientAddress(text);
    const std::string_view orig_client = Value(text, ", orig_client=");
    const std::string_view orig_queue_id = Value(text, ", orig_queue_id=");
    Mail& mail = mails_.Start(line.host, queue_id);
    mail.date = line.stamp.seconds;
    mail.client = RowText(orig_client.empty() ? address : ClientAddress(orig_client));
    mail.is_local = IsLoopback(address);
    if (!orig_queue_id.empty()) {
        JoinById(line, orig_queue_id, mail);
    }
    return true;
}

// "uid=0 from=<root>", with "orig_id=…" behind it for a mail that was put into the queue again.
bool MailTracker::TakePickup(const LogLine& line, std::string_view queue_id,
                             std::string_view text) {
    const std::size_t from = text.find(" from=<");
    if (!TakePrefix(text, "uid=") || from == kNone) {
        return false;
    }
    Mail& mail = mails_.Start(line.host, queue_id);
    mail.date = line.stamp.seconds;
    mail.is_local = true;
    std::string_view sender;
    text.remove_prefix(std::min(text.find('<'), text.size()));
    TakeAddress(text, sender);
    mail.mail_from = RowAddress(sender);
    const std::string_view first = Value(text, " orig_id=");
    if (!first.empty()) {
        JoinById(line, first, mail);
        if (const Mail* const known = mails_.Find(line.host, first)) {
            mail.recipients = known->recipients;
        }
    }
    return true;
}

bool MailTracker::TakeCleanup(const LogLine& line, std::string_view queue_id,
                              std::string_view text) {
    if (TakePrefix(text, "message-id=") || TakePrefix(text, "resent-message-id=")) {
        Mail& mail = MailOf(line, queue_id);
        const bool may_be_second = mail.is_local || mail.client.empty();
        Mail* const first =
            text.empty() ? nullptr : mails_.SetMessageId(mail, RowText(text), may_be_second);
        if (first != nullptr) {
            Join(*first, mail);
        }
        return true;
    }
    if (TakePrefix(text, "warning: header ") || TakePrefix(text, "info: header ")) {
        return TakeSubject(line, queue_id, text);
    }
    for (const std::string_view end :
         {"milter-reject: END-OF-MESSAGE ", "milter-discard: END-OF-MESSAGE ",
          "reject: ", "discard: "}) {
        if (TakePrefix(text, end)) {
            mails_.Remove(line.host, queue_id);
            return true;
        }
    }
    return false;
}

bool MailTracker::TakeSubject(const LogLine& line, std::string_view queue_id,
                              std::string_view text) {
    constexpr std::string_view kName = "subject:";
    const auto equal = [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + 32 : b); };
    ContentCheck check;
    if (text.size() < kName.size() ||
        !std::equal(kName.begin(), kName.end(), text.begin(), equal) ||
        !ReadContentCheck(text.substr(kName.size()), check)) {
        return false;
    }
    Mail& mail = MailOf(line, queue_id);
    std::string_view subject = check.content;
    subject.remove_prefix(std::min(subject.find_first_not_of(' '), subject.size()));
    if (mail.subject.empty()) {
        mail.subject = RowHeader(subject);
    }
    if (mail.mail_from.empty()) {
        mail.mail_from = RowAddress(check.envelope.sender);
    }
    return true;
}

// "from=<…>, size=…, nrcpt=… (queue active)", "from=<…>, status=expired, returned to sender" or
// "removed".
bool MailTracker::TakeManager(const LogLine& line, std::string_view queue_id, std::string_view text,
                              Events& events) {
    if (text == "removed") {
        mails_.Remove(line.host, queue_id);
        return true;
    }
    std::string_view sender;
    if (!TakePrefix(text, "from=") || !TakeAddress(text, sender)) {
        return false;
    }
    Mail& mail = MailOf(line, queue_id);
    mail.mail_from = RowAddress(sender);
    if (TakePrefix(text, ", size=")) {
        mail.size = Size(text);
        return true;
    }
    if (!TakePrefix(text, ", status=expired") && !TakePrefix(text, ", status=force-expired")) {
        return false;
    }
    for (const Recipient& recipient : TakeDeferred(mail)) {
        AddRow(line, mail, recipient, static_cast<std::int32_t>(MailStatus::Bounced), events);
    }
    return true;
}

// "sender non-delivery notification: <id of the notification>" and the like.
bool MailTracker::TakeBounce(const LogLine& line, std::string_view queue_id,
                             std::string_view text) {
    const std::string_view next = QueueIdBehind(text, " notification: ");
    if (next.empty()) {
        return false;
    }
    mails_.AddNext(MailOf(line, queue_id), next);
    return true;
}

bool MailTracker::TakeDelivery(const LogLine& line, std::string_view queue_id,
                               std::string_view text, bool is_outward, Events& events) {
    const std::optional<Delivery> delivery = Delivery::Read(text);
    if (!delivery) {
        return false;
    }
    const bool is_sent = delivery->status == "sent";
    if (delivery->status == "deferred") {
        Recipient recipient = delivery->recipient;
        recipient.is_deferred = true;
        Remember(MailOf(line, queue_id), std::move(recipient));
        return true;
    }
    if (!is_sent && delivery->status != "bounced" && delivery->status != "expired") {
        return false;  // the answer to a question whether it could be delivered
    }
    Mail& mail = MailOf(line, queue_id);
    if (is_sent) {
        if (const auto next = NextQueueId(line, mail, delivery->reason)) {
            HandOver(line, mail, *delivery, *next);
            return true;
        }
    }
    const Recipient recipient = TakeRecipient(mail, delivery->recipient);
    const MailStatus status = !is_sent                ? MailStatus::Bounced
                              : recipient.is_deferred ? MailStatus::Resent
                              : is_outward            ? MailStatus::Sent
                                                      : MailStatus::Received;
    AddRow(line, mail, recipient, static_cast<std::int32_t>(status), events);
    return true;
}

Mail& MailTracker::MailOf(const LogLine& line, std::string_view queue_id) {
    Mail& mail = mails_.FindOrStart(line.host, queue_id);
    mail.date = line.stamp.seconds;
    return mail;
}

void MailTracker::Join(Mail& first, Mail& second) {
    mails_.AddNext(first, second.queue_id);
    if (second.subject.empty()) {
        second.subject = first.subject;
    }
    if (!first.client.empty()) {
        second.client = first.client;
    }
}

void MailTracker::JoinById(const LogLine& line, std::string_view first_queue_id, Mail& second) {
    if (first_queue_id == second.queue_id) {
        return;
    }
    if (Mail* const first = mails_.Find(line.host, first_queue_id)) {
        Join(*first, second);
    }
}

// The queue id under which the same mail goes on here, if this was no delivery. Another host
// answers "queued as" just as well, so that one must be known.
std::optional<std::string_view> MailTracker::NextQueueId(const LogLine& line, const Mail& mail,
                                                         std::string_view reason) {
    const std::string_view forwarded = QueueIdBehind(reason, kForwarded);
    if (!forwarded.empty()) {
        return forwarded;
    }
    const std::string_view queued = QueueIdBehind(reason, "queued as ");
    if (queued.empty()) {
        return std::nullopt;
    }
    if (Contains(mail.next_queue_ids, queued)) {
        return queued;
    }
    const Mail* const next = mails_.Find(line.host, queued);
    const bool is_same =
        next != nullptr && !mail.message_id.empty() && next->message_id == mail.message_id;
    return is_same ? std::optional(queued) : std::nullopt;
}

void MailTracker::HandOver(const LogLine& line, Mail& mail, const Delivery& delivery,
                           std::string_view next_queue_id) {
    Recipient recipient = TakeRecipient(mail, delivery.recipient);
    Mail* const next = mails_.Find(line.host, next_queue_id);
    if (next == nullptr || next == &mail) {
        return;
    }
    Join(mail, *next);
    const bool has_same_recipient = QueueIdBehind(delivery.reason, kForwarded).empty();
    if (has_same_recipient && (recipient.is_deferred || !recipient.ori_mail_to.empty())) {
        Remember(*next, std::move(recipient));
    }
}

void MailTracker::AddRow(const LogLine& line, const Mail& mail, const Recipient& recipient,
                         std::int32_t status, Events& events) {
    MailEvent& event = events.emplace_back();
    event.row.date = static_cast<std::int32_t>(line.stamp.seconds);
    event.row.size = mail.size;
    event.row.status = status;
    event.row.message_id = mail.message_id;
    event.row.queue_id = mail.queue_id;
    event.row.mail_from = mail.mail_from;
    event.row.mail_to = recipient.mail_to;
    event.row.host = RowText(mail.host);
    event.row.subject = mail.subject;
    event.row.ori_mail_to = recipient.ori_mail_to;
    event.fingerprint = fingerprints_.Of(line, recipient.mail_to + '\0' + recipient.ori_mail_to);
}

}  // namespace serverlog::program
