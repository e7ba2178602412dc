#pragma once

#include <chrono>
#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "collect/rejected_log.h"
#include "input/message_source.h"
#include "mail_events/counts.h"
#include "mail_events/fingerprints.h"
#include "mail_events/log_line.h"
#include "mail_events/mail_event_store.h"
#include "mail_events/mail_tracker.h"
#include "mail_events/mails_in_flight.h"
#include "mail_events/patient_store.h"
#include "mail_events/security_events.h"
#include "process/retry.h"

namespace serverlog::program {

/// Takes the lines of a mail server's log out of a source and stores what they tell as rows of the
/// mail and the security log, many in one transaction where many wait.
class MailCollector {
 public:
    /// All must outlive this object. Throws Failure if it was told to stop before the state could
    /// be read.
    ///
    /// @param rejected_log  where lines go that could not be stored before it had to stop
    MailCollector(MessageSource& source, MailEventStore& store, const RejectedLog& rejected_log,
                  Retry& retry, std::ostream& talk);

    /// Works until the source ends. Throws Failure if the source fails, or if it had to give up on
    /// lines that could not be stored.
    void Run();

    /// "collected N mail, N security, skipped N, unreadable N": rows that are new in the stores,
    /// lines that gave nothing, lines that are none of a log.
    std::string Summary() const;

    /// What was skipped, by program; empty if nothing was.
    std::string Skipped() const;

 private:
    void Loop();
    void Take(std::string line);
    void Read(const std::string& line);
    bool HasPending() const { return !lines_.empty(); }
    bool IsFull() const;
    bool IsWorthStoring() const;
    void Store(bool at_end);
    void Commit();
    [[noreturn]] void GiveUp();

    MessageSource& source_;
    MailEventStore& store_;
    const RejectedLog& rejected_log_;
    Retry& retry_;
    std::ostream& talk_;

    PatientStore patient_store_;
    MailsInFlight mails_;
    Fingerprints fingerprints_;
    MailTracker tracker_;
    SecurityEvents security_;
    LogLineReader reader_;

    // What is read but not stored yet.
    std::vector<std::string> lines_;
    std::size_t pending_bytes_ = 0;
    MailEventBatch batch_;

    std::chrono::steady_clock::time_point stored_at_;
    Counts counts_;
};

}  // namespace serverlog::program
