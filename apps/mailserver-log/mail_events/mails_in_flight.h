#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "mail_events/mail.h"

namespace serverlog::program {

/// The mails in flight. The state file holds them all; here are those that lines were about of
/// late, with what the file does not know yet.
class MailsInFlight {
 public:
    /// Where the other mails come from. May throw; nothing has changed then.
    class Source {
     public:
        virtual ~Source() = default;
        virtual std::optional<Mail> Load(std::string_view host, std::string_view queue_id) = 0;
        /// The queue id of a mail of that message id.
        virtual std::optional<std::string> FindMessage(std::string_view host,
                                                       std::string_view message_id) = 0;
    };

    /// @param source  must outlive this object
    explicit MailsInFlight(Source& source) : source_(source) {}

    /// The mail of that id; null if there is none. It counts as changed. Valid until Committed.
    Mail* Find(std::string_view host, std::string_view queue_id);

    /// The mail of that id, a new one if there is none.
    Mail& FindOrStart(std::string_view host, std::string_view queue_id);

    /// A new mail; one that had the id before is gone.
    Mail& Start(std::string_view host, std::string_view queue_id);

    void Remove(std::string_view host, std::string_view queue_id);

    /// Notes that the same mail got another queue id on its host.
    void AddNext(Mail& mail, std::string_view next_queue_id);

    /// Gives a mail its message id.
    ///
    /// @return the first mail in flight on its host that had this id before, null if none had or
    ///         this is the empty one
    Mail* SetMessageId(Mail& mail, std::string_view message_id, bool look_for_first);

    /// Calls `visit` for each mail that the file does not have as it is here: with null for one
    /// that is gone.
    void VisitChanged(const std::function<void(const std::string& host, const std::string& queue_id,
                                               const Mail* mail)>& visit) const;

    /// What AddNext noted since Committed. It outlives the mails.
    struct Joined {
        std::string host;
        std::string first_queue_id;
        std::string second_queue_id;
        std::int64_t date;
    };
    const std::vector<Joined>& NewlyJoined() const { return joined_; }

    bool HasChanged() const { return changed_ > 0; }

    /// The file has it all now.
    void Committed();

 private:
    struct Entry {
        std::string host;
        std::string queue_id;
        std::optional<Mail> mail;  // none: gone
        bool is_changed = false;
    };

    Entry& Get(std::string_view host, std::string_view queue_id);
    void Change(Entry& entry);
    Mail* FindFirst(const Mail& mail, std::string_view message_id);

    Source& source_;
    std::unordered_map<std::string, Entry> entries_;           // by host and queue id
    std::unordered_map<std::string, std::string> by_message_;  // queue id by host and message id
    std::vector<Joined> joined_;
    std::size_t changed_ = 0;
    std::string key_;
};

}  // namespace serverlog::program
