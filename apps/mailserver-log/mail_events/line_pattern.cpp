#include "mail_events/line_pattern.h"

#include "mail_events/postfix_text.h"

namespace serverlog::program {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::string_view kAddressCharacters = "0123456789abcdefABCDEF:.";
constexpr std::string_view kDomainCharacters =
    "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ-._";
constexpr std::string_view kWordCharacters =
    " abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";

// The characters at the start that are among `characters`.
std::string_view TakeRun(std::string_view& text, std::string_view characters) {
    const std::string_view run = text.substr(0, text.find_first_not_of(characters));
    text.remove_prefix(run.size());
    return run;
}

bool TakeId(std::string_view& text, PatternFields& fields) {
    if (TakePrefix(text, "NOQUEUE")) {
        return true;
    }
    fields.queue_id = text.substr(0, text.find_first_of(": "));
    text.remove_prefix(fields.queue_id.size());
    return IsQueueId(fields.queue_id);
}

// One or two codes, each with a blank behind it.
bool TakeCode(std::string_view& text) {
    std::size_t count = 0;
    while (count < 2) {
        std::string_view rest = text;
        if (TakeRun(rest, "0123456789.").empty() || !TakePrefix(rest, " ")) {
            break;
        }
        text = rest;
        ++count;
    }
    return count > 0;
}

bool TakeSource(std::string_view& text, PatternFields& fields) {
    if (TakePrefix(text, "unknown")) {
        return true;
    }
    fields.src = TakeRun(text, kAddressCharacters);
    return !fields.src.empty();
}

bool TakeLooked(std::string_view& text, PatternFields& fields) {
    constexpr std::string_view kBegin = "; from=<";
    const std::size_t at = text.find(kBegin);
    if (at != kNone) {
        text.remove_prefix(at + 2);
        const Envelope envelope = TakeEnvelope(text);
        fields.sender = envelope.sender;
        fields.recipient = envelope.recipient;
    }
    return true;
}

bool TakeCheck(std::string_view& text, PatternFields& fields) {
    ContentCheck check;
    if (!ReadContentCheck(text, check)) {
        return false;
    }
    fields.src = check.client;
    fields.sender = check.envelope.sender;
    fields.recipient = check.envelope.recipient;
    if (TakePrefix(check.content, "Subject: ")) {
        fields.subject = check.content;
    }
    text = check.reply;
    return true;
}

// Where a field of that name is kept; null for none.
std::string_view* Kept(std::string_view name, PatternFields& fields) {
    return name == "sender"      ? &fields.sender
           : name == "recipient" ? &fields.recipient
           : name == "subject"   ? &fields.subject
                                 : nullptr;
}

bool TakeBracketed(std::string_view name, std::string_view& text, PatternFields& fields) {
    std::string_view address;
    if (!TakeAddress(text, address)) {
        return false;
    }
    if (std::string_view* kept = Kept(name, fields)) {
        *kept = address;
    }
    return true;
}

// Up to `literal`, or to the end if that is empty.
bool TakeAnything(std::string_view name, std::string_view literal, std::string_view& text,
                  PatternFields& fields) {
    const std::size_t end = literal.empty() ? text.size() : text.find(literal);
    if (end == kNone) {
        return false;
    }
    if (std::string_view* kept = Kept(name, fields)) {
        *kept = text.substr(0, end);
    }
    text.remove_prefix(end);
    return true;
}

bool FillHole(std::string_view name, std::string_view literal, std::string_view& text,
              PatternFields& fields) {
    if (name == "id") {
        return TakeId(text, fields);
    }
    if (name == "code") {
        return TakeCode(text);
    }
    if (name == "src") {
        return TakeSource(text, fields);
    }
    if (name == "domain") {
        return !TakeRun(text, kDomainCharacters).empty();
    }
    if (name == "words") {
        return !TakeRun(text, kWordCharacters).empty();
    }
    if (name == "envelope") {
        return TakeLooked(text, fields);
    }
    if (name == "check") {
        return TakeCheck(text, fields);
    }
    if (name == "end") {
        return text.empty();
    }
    if (name[0] == '<') {
        return TakeBracketed(name.substr(1, name.size() - 2), text, fields);
    }
    return TakeAnything(name, literal, text, fields);
}

}  // namespace

bool MatchesPattern(std::string_view pattern, std::string_view text, PatternFields& fields) {
    while (!pattern.empty()) {
        const std::size_t hole = pattern.find('{');
        if (!TakePrefix(text, pattern.substr(0, hole))) {
            return false;
        }
        if (hole == kNone) {
            return true;
        }
        const std::size_t end = pattern.find('}', hole);
        const std::string_view name = pattern.substr(hole + 1, end - hole - 1);
        pattern.remove_prefix(end + 1);
        const std::string_view literal = pattern.substr(0, pattern.find('{'));
        if (!FillHole(name, literal, text, fields)) {
            return false;
        }
    }
    return true;
}

}  // namespace serverlog::program
