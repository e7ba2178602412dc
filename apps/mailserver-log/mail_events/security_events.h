#pragma once

#include <string_view>
#include <vector>

#include "mail_events/fingerprints.h"
#include "mail_events/line_pattern.h"
#include "mail_events/log_line.h"
#include "mail_events/mail_event.h"
#include "mail_events/mails_in_flight.h"
#include "mail_events/security_rules.h"

namespace serverlog::program {

/// Whether a rule of the table is for this program and text.
///
/// @param fields  what the rule took out of the text, if it is
bool MatchesRule(const SecurityRule& rule, std::string_view program, std::string_view text,
                 PatternFields& fields);

/// Gives rows of the security log for lines that reject or flag a mail.
class SecurityEvents {
 public:
    /// Both must outlive this object.
    SecurityEvents(MailsInFlight& mails, Fingerprints& fingerprints)
        : mails_(mails), fingerprints_(fingerprints) {}

    /// Takes the next line of the log. What it does not tell of a mail with a queue id comes from
    /// the lines before, so it wants the line before MailTracker, for which a rejected mail is
    /// over.
    ///
    /// @param events  gets the row
    /// @return whether there is one
    ///
    /// Throws what the mails' source throws; nothing has changed then.
    bool Take(const LogLine& line, std::vector<SecurityEvent>& events);

 private:
    void AddKnown(const LogLine& line, std::string_view queue_id, record::SecurityLog& row);

    MailsInFlight& mails_;
    Fingerprints& fingerprints_;
};

}  // namespace serverlog::program
