#pragma once

#include <map>
#include <string>

/// The settings of the SMTP service, as far as they name the mail domains. A new one knows none
/// until LoadSettings.
///
/// One thread uses it at a time.
class SmtpConf {
 public:
    /// Reads the domains in the way of loadAllUtf8DomainList, in place of those read before.
    ///
    /// @return false when they cannot be read; those read before stay
    bool LoadSettings();

    /// Gives the name of a domain.
    ///
    /// @param id    its "domain_id"; of two domains with one number the first counts
    /// @param name  receives the name
    /// @return false when there is no domain of that number; `name` is then untouched
    bool GetDomainName(const int& id, std::string& name) const;

 private:
    std::map<int, std::string> names_;
};
