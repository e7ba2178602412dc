#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "mail_events/fingerprints.h"
#include "mail_events/log_line.h"
#include "mail_events/mail_event.h"
#include "mail_events/mails_in_flight.h"

namespace serverlog::program {

/// Follows each mail over the parts of Postfix and gives a row for each recipient once its fate is
/// known.
class MailTracker {
 public:
    /// Both must outlive this object.
    MailTracker(MailsInFlight& mails, Fingerprints& fingerprints)
        : mails_(mails), fingerprints_(fingerprints) {}

    /// Takes the next line of the log.
    ///
    /// @param events  gets the rows
    /// @return whether it told anything
    ///
    /// Throws what the mails' source throws; the line is taken in part then.
    bool Take(const LogLine& line, std::vector<MailEvent>& events);

 private:
    struct Delivery;
    using Events = std::vector<MailEvent>;

    bool TakeSmtpd(const LogLine& line, std::string_view queue_id, std::string_view text);
    bool TakePickup(const LogLine& line, std::string_view queue_id, std::string_view text);
    bool TakeCleanup(const LogLine& line, std::string_view queue_id, std::string_view text);
    bool TakeSubject(const LogLine& line, std::string_view queue_id, std::string_view text);
    bool TakeManager(const LogLine& line, std::string_view queue_id, std::string_view text,
                     Events& events);
    bool TakeBounce(const LogLine& line, std::string_view queue_id, std::string_view text);
    bool TakeDelivery(const LogLine& line, std::string_view queue_id, std::string_view text,
                      bool is_outward, Events& events);

    Mail& MailOf(const LogLine& line, std::string_view queue_id);
    void Join(Mail& first, Mail& second);
    void JoinById(const LogLine& line, std::string_view first_queue_id, Mail& second);
    std::optional<std::string_view> NextQueueId(const LogLine& line, const Mail& mail,
                                                std::string_view reason);
    void HandOver(const LogLine& line, Mail& mail, const Delivery& delivery,
                  std::string_view next_queue_id);
    void AddRow(const LogLine& line, const Mail& mail, const Recipient& recipient,
                std::int32_t status, Events& events);

    MailsInFlight& mails_;
    Fingerprints& fingerprints_;
};

}  // namespace serverlog::program
