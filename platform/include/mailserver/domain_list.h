#pragma once

#include <list>
#include <string>

/// Gives the mail domains that this server hosts, from
/// `/var/packages/PostCube-Server/etc/domains.json`:
///
///     {"domains":[{"domain_id":1,"name":"example.com"}]}
///
/// Names come in lower case and in Unicode, never in punycode form. A name that is no valid domain
/// (RFC 5890; letters, digits and hyphens as far as it is ASCII) is refused with a line in the mail
/// log, so no name holds a quote, a blank or a wildcard of SQL. A missing file means no domains.
///
/// @param domains  receives the names in the order of the file, in place of what it held
/// @return 0; -1 when the file cannot be read or is no such object. `domains` is then untouched,
///         and the mail log has the reason, as has MLIBCErrGet.
///
/// Safe to call from several threads at once.
int loadAllUtf8DomainList(std::list<std::string>& domains);
