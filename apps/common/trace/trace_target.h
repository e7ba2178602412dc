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
    /// Throws std::invalid_argument, whose text is fit for a person behind the name of what it was
    /// given as, for one that is empty but for the brackets.
    explicit TraceTarget(const std::string& text);

    const std::string& Text() const { return text_; }

    /// No queue id has an "@".
    bool MayBeQueueId() const;

    /// The rows of the mail store that have it for an id. That has an index unless it may be a
    /// queue id.
    merodbquery::Condition MailIds() const;

    /// The rows of the mail store that have it for a sender or recipient.
    merodbquery::Condition MailAddresses() const;

    /// The same for the security store.
    merodbquery::Condition SecurityAddresses() const;

    /// Rows of the security store, among them all whose event names it. That has no index.
    merodbquery::Condition Events() const;

    /// Whether it is a word of this event.
    bool IsNamedIn(const std::string& event) const;

    /// Whether it is this address.
    bool IsAddress(const std::string& address) const;

 private:
    void AddAddress(const std::string& address);

    std::string text_;
    std::vector<std::string> addresses_;  // as it was given and as it may have been stored
};

}  // namespace serverlog::program
