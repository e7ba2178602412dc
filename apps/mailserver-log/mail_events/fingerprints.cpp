#include "mail_events/fingerprints.h"

namespace serverlog::program {

std::int64_t Fingerprints::Of(const LogLine& line, std::string_view part) {
    if (line.stamp.seconds != stamp_.seconds || line.stamp.microseconds != stamp_.microseconds) {
        stamp_ = line.stamp;
        counts_.clear();
    }
    text_ = std::to_string(stamp_.seconds) + '.' + std::to_string(stamp_.microseconds);
    for (const std::string_view field : {line.host, line.program, line.process, line.text, part}) {
        text_ += '\0';
        text_ += field;
    }
    const std::uint64_t hash = SipHash(key_, text_);
    const std::uint64_t before = counts_[hash]++;
    if (before == 0) {
        return static_cast<std::int64_t>(hash);
    }
    text_ += '\0' + std::to_string(before);
    return static_cast<std::int64_t>(SipHash(key_, text_));
}

}  // namespace serverlog::program
