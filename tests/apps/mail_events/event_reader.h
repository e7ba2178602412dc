#pragma once

#include <mailserver-log/record/columns.h>

#include <optional>
#include <string>
#include <vector>

#include "mail_events/mail_tracker.h"
#include "mail_events/security_events.h"

namespace test {

/// Reads lines of a log as the collector does, without its files.
class EventReader {
 public:
    /// The rows of the mail log that a line gives, as "status from to ori_to size message_id
    /// queue_id host subject" with "|" between.
    std::vector<std::string> Mail(const std::string& line) {
        Read(line);
        std::vector<std::string> rows;
        for (const auto& [row, fingerprint] : mail_) {
            static const char* const kWords[] = {"sent", "received", "bounced", "resent"};
            rows.push_back(std::string(kWords[row.status]) + '|' + row.mail_from + '|' +
                           row.mail_to + '|' + row.ori_mail_to + '|' + std::to_string(row.size) +
                           '|' + row.message_id + '|' + row.queue_id + '|' + row.host + '|' +
                           row.subject);
        }
        return rows;
    }

    /// The rows of the security log, as "type src sender recipient subject".
    std::vector<std::string> Security(const std::string& line) {
        Read(line);
        std::vector<std::string> rows;
        for (const auto& [row, fingerprint] : security_) {
            rows.push_back(row.type + '|' + row.src + '|' + row.sender + '|' + row.recipient + '|' +
                           row.subject);
        }
        return rows;
    }

 private:
    class NoFile : public serverlog::program::MailsInFlight::Source {
     public:
        std::optional<serverlog::program::Mail> Load(std::string_view, std::string_view) override {
            return std::nullopt;
        }
        std::optional<std::string> FindMessage(std::string_view, std::string_view) override {
            return std::nullopt;
        }
    };

    void Read(const std::string& line) {
        mail_.clear();
        security_.clear();
        serverlog::program::LogLine parsed;
        if (reader_.Read(line, parsed)) {
            events_.Take(parsed, security_);
            tracker_.Take(parsed, mail_);
        }
    }

    NoFile no_file_;
    serverlog::program::MailsInFlight mails_{no_file_};
    serverlog::program::Fingerprints fingerprints_{serverlog::program::SipKey{}};
    serverlog::program::LogLineReader reader_{"here"};
    serverlog::program::MailTracker tracker_{mails_, fingerprints_};
    serverlog::program::SecurityEvents events_{mails_, fingerprints_};
    std::vector<serverlog::program::MailEvent> mail_;
    std::vector<serverlog::program::SecurityEvent> security_;
};

}  // namespace test
