#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "mail_events/log_line.h"
#include "mail_events/sip_hash.h"

namespace serverlog::program {

/// Gives each row a number by the line that it comes from, so that the same line read again is
/// known. Lines that are the same to the last byte do occur, in a log that tells no fractions of a
/// second; among lines of one stamp the second of them gets another number than the first. Who
/// reads the log again counts the same.
class Fingerprints {
 public:
    explicit Fingerprints(const SipKey& key) : key_(key) {}

    /// @param line  the lines of the log, in order; those that give no row may be left out
    /// @param part  which of the rows of the line
    std::int64_t Of(const LogLine& line, std::string_view part);

 private:
    SipKey key_;
    Stamp stamp_;
    std::unordered_map<std::uint64_t, std::uint64_t> counts_;  // of the lines of that stamp
    std::string text_;
};

}  // namespace serverlog::program
