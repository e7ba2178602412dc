#pragma once

#include <merodbquery/condition.h>

#include <string>
#include <vector>

namespace serverlog::program {

/// What is to be traced: a queue id, a message id or an address. A text with an "@" may be both of
/// the last two, one without it both of the first, so it is looked for as both.
class TraceTarget {
 public:
    /// @param text  with or without angle brackets around it; each of its characters stands for
    ///              itself
    ///
    /// Throws CLI::ValidationError for a text that is empty but for the brackets.
    explicit TraceTarget(const std::string& text);

    /// The rows of the mail store that have it for an id. Only the search for a message id has an
    /// index.
    merodbquery::Condition MailIds() const;

    /// The rows of the mail store that have it for a sender or recipient.
    merodbquery::Condition MailAddresses() const;

    /// The same for the security store.
    merodbquery::Condition SecurityAddresses() const;

    /// Whether it is this address.
    bool IsAddress(const std::string& address) const;

 private:
    std::string text_;
    std::vector<std::string> addresses_;  // as it was given, and in small letters
};

}  // namespace serverlog::program
