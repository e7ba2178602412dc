#pragma once

#include <mailserver-log/record/emaillog/mail_log.h>
#include <mailserver-log/record/securitylog/security_log.h>

#include <cstdint>

namespace serverlog::program {

/// A row that is to be stored once.
template <class Record>
struct Event {
    Record row;
    std::int64_t fingerprint = 0;  ///< see Fingerprints
};

using MailEvent = Event<record::MailLog>;
using SecurityEvent = Event<record::SecurityLog>;

}  // namespace serverlog::program
