#include "mail_events/mails_in_flight.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace serverlog::program {

namespace {

// More would take memory; the others come from the file again.
constexpr std::size_t kMostEntries = 8192;

// What Postfix writes for each mail that came without one.
constexpr std::string_view kNoMessageId = "<>";

void MakeKey(std::string_view host, std::string_view id, std::string& key) {
    key.assign(host);
    key += '\0';
    key += id;
}

std::string KeyOf(std::string_view host, std::string_view id) {
    std::string key;
    MakeKey(host, id, key);
    return key;
}

}  // namespace

Mail* MailsInFlight::Find(std::string_view host, std::string_view queue_id) {
    Entry& entry = Get(host, queue_id);
    if (!entry.mail) {
        return nullptr;
    }
    Change(entry);
    return &*entry.mail;
}

Mail& MailsInFlight::FindOrStart(std::string_view host, std::string_view queue_id) {
    Mail* const mail = Find(host, queue_id);
    return mail != nullptr ? *mail : Start(host, queue_id);
}

Mail& MailsInFlight::Start(std::string_view host, std::string_view queue_id) {
    MakeKey(host, queue_id, key_);
    Entry& entry = entries_[key_];
    Change(entry);
    entry.host = host;
    entry.queue_id = queue_id;
    entry.mail.emplace();
    entry.mail->host = host;
    entry.mail->queue_id = queue_id;
    return *entry.mail;
}

void MailsInFlight::Remove(std::string_view host, std::string_view queue_id) {
    MakeKey(host, queue_id, key_);
    Entry& entry = entries_[key_];
    Change(entry);
    entry.host = host;
    entry.queue_id = queue_id;
    if (!entry.mail) {
        return;
    }
    const auto message = by_message_.find(KeyOf(host, entry.mail->message_id));
    if (message != by_message_.end() && message->second == queue_id) {
        by_message_.erase(message);
    }
    entry.mail.reset();
}

void MailsInFlight::AddNext(Mail& mail, std::string_view next_queue_id) {
    std::vector<std::string>& known = mail.next_queue_ids;
    if (std::find(known.begin(), known.end(), next_queue_id) == known.end()) {
        known.emplace_back(next_queue_id);
        joined_.push_back({mail.host, mail.queue_id, known.back(), mail.date});
    }
}

Mail* MailsInFlight::SetMessageId(Mail& mail, std::string_view message_id, bool look_for_first) {
    mail.message_id = message_id;
    if (message_id == kNoMessageId) {
        return nullptr;
    }
    Mail* const first = look_for_first ? FindFirst(mail, message_id) : nullptr;
    if (first == nullptr) {
        by_message_[KeyOf(mail.host, message_id)] = mail.queue_id;
    }
    return first;
}

Mail* MailsInFlight::FindFirst(const Mail& mail, std::string_view message_id) {
    const auto known = by_message_.find(KeyOf(mail.host, message_id));
    const std::optional<std::string> queue_id =
        known != by_message_.end() ? known->second : source_.FindMessage(mail.host, message_id);
    if (!queue_id || *queue_id == mail.queue_id) {
        return nullptr;
    }
    Mail* const first = Find(mail.host, *queue_id);
    // What the file tells may be over by now.
    return first != nullptr && first->message_id == message_id ? first : nullptr;
}

void MailsInFlight::VisitChanged(
    const std::function<void(const std::string&, const std::string&, const Mail*)>& visit) const {
    for (const auto& [key, entry] : entries_) {
        if (entry.is_changed) {
            visit(entry.host, entry.queue_id, entry.mail ? &*entry.mail : nullptr);
        }
    }
}

void MailsInFlight::Committed() {
    changed_ = 0;
    joined_.clear();
    const bool drop_all = entries_.size() > kMostEntries || by_message_.size() > kMostEntries;
    if (drop_all) {
        by_message_.clear();
    }
    for (auto entry = entries_.begin(); entry != entries_.end();) {
        entry->second.is_changed = false;
        const bool drop = drop_all || !entry->second.mail;
        entry = drop ? entries_.erase(entry) : std::next(entry);
    }
}

MailsInFlight::Entry& MailsInFlight::Get(std::string_view host, std::string_view queue_id) {
    MakeKey(host, queue_id, key_);
    const auto known = entries_.find(key_);
    if (known != entries_.end()) {
        return known->second;
    }
    std::optional<Mail> mail = source_.Load(host, queue_id);
    Entry& entry = entries_[key_];
    entry = {std::string(host), std::string(queue_id), std::move(mail), false};
    return entry;
}

void MailsInFlight::Change(Entry& entry) {
    changed_ += entry.is_changed ? 0 : 1;
    entry.is_changed = true;
}

}  // namespace serverlog::program
