#include "trace/trace_target.h"

#include <mailserver/convert_to_utf8.h>

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "trace/any_of.h"
#include "trace/brackets.h"
#include "trace/words.h"

namespace serverlog::program {

namespace {

using merodbquery::Condition;

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
        throw std::invalid_argument("is empty; give a queue id, message id or address");
    }
    // The index that finds addresses tells letters from capitals.
    AddAddress(InSmallLetters(text_));
    // The collector stores domains in their Unicode form.
    std::string unicode;
    if (addresses_.back().find("xn--") != std::string::npos &&
        MERO::POSTCUBE_SERVER::ConvertToUTF8(addresses_.back(), unicode) == 0) {
        AddAddress(unicode);
    }
}

void TraceTarget::AddAddress(const std::string& address) {
    if (!IsAddress(address)) {
        addresses_.push_back(address);
    }
}

bool TraceTarget::MayBeQueueId() const {
    return text_.find('@') == std::string::npos;
}

Condition TraceTarget::MailIds() const {
    const Condition message = AnyOf("message_id", std::vector{text_, "<" + text_ + ">"});
    return MayBeQueueId() ? message || AnyOf("queue_id", std::vector{text_}) : message;
}

Condition TraceTarget::MailAddresses() const {
    return AnyOf("mail_from", addresses_) || AnyOf("mail_to", addresses_) ||
           AnyOf("ori_mail_to", addresses_);
}

Condition TraceTarget::SecurityAddresses() const {
    return AnyOf("sender", addresses_) || AnyOf("recipient", addresses_);
}

Condition TraceTarget::Events() const {
    return Condition::HasSubstring("event", text_);
}

bool TraceTarget::IsNamedIn(const std::string& event) const {
    return AnyWord(event, [this](std::string_view word) { return word == text_; });
}

bool TraceTarget::IsAddress(const std::string& address) const {
    return std::find(addresses_.begin(), addresses_.end(), address) != addresses_.end();
}

}  // namespace serverlog::program
