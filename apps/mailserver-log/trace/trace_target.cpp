#include "trace/trace_target.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "trace/any_of.h"

namespace serverlog::program {

namespace {

using merodbquery::Condition;

std::string WithoutBrackets(const std::string& text) {
    const bool has_brackets = text.size() >= 2 && text.front() == '<' && text.back() == '>';
    return has_brackets ? text.substr(1, text.size() - 2) : text;
}

std::string InSmallLetters(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return 'A' <= letter && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return text;
}

}  // namespace

TraceTarget::TraceTarget(const std::string& text)
    : text_(WithoutBrackets(text)), addresses_({text_}) {
    if (text_.empty()) {
        throw CLI::ValidationError("WHAT", "is empty; give a queue id, message id or address");
    }
    // The index that finds addresses tells letters from capitals.
    if (const std::string small = InSmallLetters(text_); small != text_) {
        addresses_.push_back(small);
    }
}

Condition TraceTarget::MailIds() const {
    const Condition message = AnyOf("message_id", std::vector{text_, "<" + text_ + ">"});
    // No queue id has an "@", and the search for one has to read the whole store.
    return text_.find('@') != std::string::npos ? message
                                                : message || AnyOf("queue_id", std::vector{text_});
}

Condition TraceTarget::MailAddresses() const {
    return AnyOf("mail_from", addresses_) || AnyOf("mail_to", addresses_) ||
           AnyOf("ori_mail_to", addresses_);
}

Condition TraceTarget::SecurityAddresses() const {
    return AnyOf("sender", addresses_) || AnyOf("recipient", addresses_);
}

bool TraceTarget::IsAddress(const std::string& address) const {
    return std::find(addresses_.begin(), addresses_.end(), address) != addresses_.end();
}

}  // namespace serverlog::program
