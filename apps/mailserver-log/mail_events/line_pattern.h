#pragma once

#include <string_view>

namespace serverlog::program {

/// What a pattern takes out of a text.
struct PatternFields {
    std::string_view queue_id;  ///< empty for a mail that has none yet
    std::string_view src;
    std::string_view sender;
    std::string_view recipient;
    std::string_view subject;
};

/// Whether `text` starts as `pattern` tells. A pattern is text with holes in braces:
///
///     {*}          anything up to the text behind the hole, at its first place
///     {id}         a queue id, or NOQUEUE
///     {code}       codes of a reply, such as "550 5.7.1 " or "5.7.1 "
///     {src}        an address of a host, or the word "unknown"
///     {domain}     a domain's name
///     {words}      letters and blanks
///     {sender}     as {*}, kept; likewise {recipient}, {subject}
///     {<sender>}   an address between < and >, kept; likewise {<recipient>}, {<*>}
///     {envelope}   looks for "; from=<…> to=<…>" in the rest; keeps both where they are there
///     {check}      see ReadContentCheck; goes on with the reply
///     {end}        nothing
///
/// @param fields  what was kept; may be changed as well if it does not match
bool MatchesPattern(std::string_view pattern, std::string_view text, PatternFields& fields);

}  // namespace serverlog::program
