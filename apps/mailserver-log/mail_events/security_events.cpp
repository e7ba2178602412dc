#include "mail_events/security_events.h"

#include <algorithm>
#include <string>

#include "mail_events/postfix_text.h"
#include "mail_events/row_text.h"

namespace serverlog::program {

namespace {

constexpr std::string_view kPostfix = "postfix/";

bool IsProgram(const SecurityRule& rule, std::string_view program, std::string_view part) {
    if (part.empty()) {
        return rule.program == program;
    }
    return rule.program.substr(0, kPostfix.size()) == kPostfix &&
           rule.program.substr(kPostfix.size()) == part;
}

bool Matches(const SecurityRule& rule, std::string_view text, PatternFields& fields) {
    PatternFields ignored;
    fields = {};
    return MatchesPattern(rule.pattern, text, fields) &&
           std::none_of(rule.except.begin(), rule.except.end(), [&](std::string_view pattern) {
               return !pattern.empty() && MatchesPattern(pattern, text, ignored);
           });
}

// Some programs write addresses with their brackets, and "<UNKNOWN>" for none.
std::string Address(std::string_view address) {
    if (address.size() > 1 && address.front() == '<' && address.back() == '>') {
        address = address.substr(1, address.size() - 2);
    }
    return address == "UNKNOWN" ? std::string() : RowAddress(address);
}

}  // namespace

bool MatchesRule(const SecurityRule& rule, std::string_view program, std::string_view text,
                 PatternFields& fields) {
    return IsProgram(rule, program, PostfixPart(program)) && Matches(rule, text, fields);
}

bool SecurityEvents::Take(const LogLine& line, std::vector<SecurityEvent>& events) {
    const std::string_view part = PostfixPart(line.program);
    PatternFields fields;
    const auto* const rule = std::find_if(std::begin(kSecurityRules), std::end(kSecurityRules),
                                          [&](const SecurityRule& candidate) {
                                              return IsProgram(candidate, line.program, part) &&
                                                     Matches(candidate, line.text, fields);
                                          });
    if (rule == std::end(kSecurityRules)) {
        return false;
    }
    SecurityEvent event;
    event.row.date = static_cast<std::int32_t>(line.stamp.seconds);
    event.row.type = rule->type;
    event.row.event = RowText(line.text);
    event.row.host = RowText(line.host);
    event.row.src = RowText(fields.src);
    event.row.sender = Address(fields.sender);
    event.row.recipient = Address(fields.recipient);
    event.row.subject = RowHeader(fields.subject);
    if (!fields.queue_id.empty()) {
        AddKnown(line, fields.queue_id, event.row);
    }
    event.fingerprint = fingerprints_.Of(line, rule->type);
    events.push_back(std::move(event));
    return true;
}

void SecurityEvents::AddKnown(const LogLine& line, std::string_view queue_id,
                              record::SecurityLog& row) {
    const Mail* const mail = mails_.Find(line.host, queue_id);
    if (mail == nullptr) {
        return;
    }
    const auto add = [](std::string& field, const std::string& known) {
        if (field.empty()) {
            field = known;
        }
    };
    add(row.src, mail->client);
    add(row.sender, mail->mail_from);
    add(row.subject, mail->subject);
}

}  // namespace serverlog::program
