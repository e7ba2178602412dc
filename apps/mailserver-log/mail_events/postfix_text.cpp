#include "mail_events/postfix_text.h"

#include <algorithm>

namespace serverlog::program {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

// A host's name is shorter, and anybody may write lines that nearly look like this.
constexpr std::size_t kLongestClient = 320;

// "name[address]" or "local", and the envelope behind it.
bool ReadOrigin(std::string_view text, ContentCheck& check) {
    check = {};
    if (!TakePrefix(text, "local;")) {
        const std::size_t end = text.substr(0, kLongestClient).find(';');
        check.client = ClientAddress(text.substr(0, end));
        if (end == kNone || check.client.empty()) {
            return false;
        }
        text.remove_prefix(end + 1);
    }
    if (!TakePrefix(text, " ") || text.substr(0, 6) != "from=<") {
        return false;
    }
    check.envelope = TakeEnvelope(text);
    const std::size_t helo = text.find(" helo=<");
    const std::size_t reply = text.find(": ", helo == kNone ? 0 : text.find('>', helo));
    check.reply = reply == kNone ? std::string_view() : text.substr(reply + 2);
    return true;
}

}  // namespace

std::string_view PostfixPart(std::string_view program) {
    const std::size_t slash = program.rfind('/');
    const bool is_postfix = slash != kNone && TakePrefix(program, "postfix");
    return is_postfix ? program.substr(program.rfind('/') + 1) : std::string_view();
}

bool IsQueueId(std::string_view text) {
    constexpr std::string_view kHexadecimal = "0123456789ABCDEF";
    constexpr std::string_view kNoVowels = "0123456789BCDFGHJKLMNPQRSTVWXYZbcdfghjklmnpqrstvwxyz";
    constexpr std::size_t kShortest = 5;
    constexpr std::size_t kShortestLong = 10;
    constexpr std::size_t kLongest = 24;
    if (text.size() < kShortest || text.size() > kLongest) {
        return false;
    }
    return text.find_first_not_of(kHexadecimal) == kNone ||
           (text.size() >= kShortestLong && text.find_first_not_of(kNoVowels) == kNone);
}

bool TakeQueueId(std::string_view& text, std::string_view& queue_id) {
    const std::size_t end = text.find(": ");
    if (end == kNone || !IsQueueId(text.substr(0, end))) {
        return false;
    }
    queue_id = text.substr(0, end);
    text.remove_prefix(end + 2);
    return true;
}

bool TakePrefix(std::string_view& text, std::string_view prefix) {
    if (text.substr(0, prefix.size()) != prefix) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

bool TakeAddress(std::string_view& text, std::string_view& address) {
    if (text.substr(0, 1) != "<") {
        return false;
    }
    bool in_quotes = false;
    std::size_t end = 1;
    for (; end < text.size() && (in_quotes || text[end] != '>'); ++end) {
        if (in_quotes && text[end] == '\\') {
            ++end;
        } else if (text[end] == '"') {
            in_quotes = !in_quotes;
        }
    }
    if (end >= text.size()) {
        end = text.find('>');  // a quote that nothing closes is no quote
    }
    if (end == kNone) {
        return false;
    }
    address = text.substr(1, end - 1);
    text.remove_prefix(end + 1);
    return true;
}

std::string_view ClientAddress(std::string_view text) {
    text = text.substr(0, text.find_first_of(" ,;"));
    const std::size_t begin = text.find('[');
    const std::size_t end = text.find(']', begin == kNone ? 0 : begin);
    return begin == kNone || end == kNone ? std::string_view()
                                          : text.substr(begin + 1, end - begin - 1);
}

bool IsLoopback(std::string_view address) {
    return address == "::1" || address.substr(0, 4) == "127.";
}

Envelope TakeEnvelope(std::string_view& text) {
    Envelope envelope;
    std::string_view rest = text;
    const auto skip_separator = [](std::string_view& from) {
        from.remove_prefix(std::min(from.find_first_not_of(", "), from.size()));
    };
    if (TakePrefix(rest, "from=") && TakeAddress(rest, envelope.sender)) {
        text = rest;
        skip_separator(rest);
    } else {
        rest = text;
    }
    if (TakePrefix(rest, "to=") && TakeAddress(rest, envelope.recipient)) {
        text = rest;
    }
    return envelope;
}

bool ReadContentCheck(std::string_view text, ContentCheck& check) {
    constexpr std::string_view kFrom = " from ";
    for (std::size_t at = text.rfind(kFrom); at != kNone;
         at = at == 0 ? kNone : text.rfind(kFrom, at - 1)) {
        if (ReadOrigin(text.substr(at + kFrom.size()), check)) {
            check.content = text.substr(0, at);
            return true;
        }
    }
    return false;
}

}  // namespace serverlog::program
