#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace serverlog::program {

/// A recipient of a mail in flight of whom there is something to remember.
struct Recipient {
    std::string mail_to;
    std::string ori_mail_to;
    bool is_deferred = false;
};

/// A mail in flight: what the log has told about one queue id.
struct Mail {
    std::string host;
    std::string queue_id;
    std::int64_t date = 0;  ///< stamp of the newest line about it
    std::string message_id;
    std::string mail_from;
    std::string client;  ///< the address that it came from; empty if not known
    std::int32_t size = 0;
    std::string subject;
    bool is_local = false;  ///< came from this host
    std::vector<Recipient> recipients;
    std::vector<std::string> next_queue_ids;  ///< that the same mail got next on this host
};

}  // namespace serverlog::program
