#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "mail_events/mail_event_store.h"
#include "process/retry.h"

namespace serverlog::program {

/// Reads mails from the store, again and again while that fails. Throws Failure once a stop was
/// requested and it still fails.
class PatientStore : public MailsInFlight::Source {
 public:
    /// Both must outlive this object.
    PatientStore(MailEventStore& store, Retry& retry) : store_(store), retry_(retry) {}

    /// The key of the fingerprints.
    SipKey Key();

    std::optional<Mail> Load(std::string_view host, std::string_view queue_id) override;
    std::optional<std::string> FindMessage(std::string_view host,
                                           std::string_view message_id) override;

 private:
    template <class Read>
    auto Try(Read&& read);

    MailEventStore& store_;
    Retry& retry_;
};

}  // namespace serverlog::program
