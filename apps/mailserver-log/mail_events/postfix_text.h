#pragma once

#include <string_view>

/// Parts of the texts that Postfix logs. What a sender wrote stands in some of them, so these say
/// where it ends.
namespace serverlog::program {

/// The part of Postfix that a program is: "smtpd" for "postfix/smtpd", "postfix/submission/smtpd"
/// and "postfix-out/smtpd". Empty if it is none.
std::string_view PostfixPart(std::string_view program);

/// Whether it can be a queue id, short (hexadecimal) or long (without vowels), so that no word is
/// one.
bool IsQueueId(std::string_view text);

/// Takes "<id>: " from the start. False, and nothing is taken, if none is there.
bool TakeQueueId(std::string_view& text, std::string_view& queue_id);

/// Takes `prefix` from the start. False, and nothing is taken, if it is not there.
bool TakePrefix(std::string_view& text, std::string_view prefix);

/// Takes "<address>" from the start; a ">" between quotes is part of it. False, and nothing is
/// taken, if none is there.
bool TakeAddress(std::string_view& text, std::string_view& address);

/// The address of the client in "name[address]" or "name[address]:port" up to the first blank,
/// comma or semicolon; empty if there is none.
std::string_view ClientAddress(std::string_view text);

/// Whether an address of a client is this host's own.
bool IsLoopback(std::string_view address);

/// Who a mail, or an attempt at one, is from and to.
struct Envelope {
    std::string_view sender;
    std::string_view recipient;  ///< empty where the text does not tell
};

/// Takes "from=<…> to=<…>", with or without commas between, from the start; each of the two may be
/// missing.
Envelope TakeEnvelope(std::string_view& text);

/// What the check of a header or of the body found: "Subject: Hello from name[192.0.2.1];
/// from=<a@example.org> to=<b@example.org> proto=ESMTP helo=<name>: reply".
struct ContentCheck {
    std::string_view content;  ///< the header or the line of the body
    std::string_view client;   ///< address; empty for a mail from this host
    Envelope envelope;
    std::string_view reply;  ///< may be empty
};

/// Reads it. The content is anybody's; that it looks like the rest is of no use, for the last place
/// where the rest can start counts. False if it is none.
bool ReadContentCheck(std::string_view text, ContentCheck& check);

}  // namespace serverlog::program
