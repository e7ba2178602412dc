#pragma once

#include <cstdint>
#include <string>

namespace statistic_log {

/// A class of mail by where it goes. Mail within the server's own domains, or between strangers, is
/// in none.
struct MailClass {
    const char* name;
    bool sender_inside;
    bool recipient_inside;
};

inline constexpr MailClass kInbound = {"inbound", false, true};
inline constexpr MailClass kOutbound = {"outbound", true, false};

/// One measure of the security statistics: a table by the hour and one by the day.
struct Measure {
    const char* hour_table;
    const char* day_table;
};

inline constexpr Measure kThreatOverview = {"threat_overview_hour", "threat_overview_day"};
inline constexpr Measure kThreatOrigin = {"threat_origin_hour", "threat_origin_day"};
inline constexpr Measure kBlockedAddress = {"blocked_address_hour", "blocked_address_day"};

/// In the order in which old rows are removed from them.
inline constexpr Measure kMeasures[] = {kThreatOverview, kThreatOrigin, kBlockedAddress};

/// Counts the values of a column in each hour, in UTC, of one file of the security log.
///
/// @param schema             the file's schema name with a point behind it
/// @param since              seconds since the epoch; the hour that they lie in is the first
/// @param condition          " AND …" with a blank at its end, or empty
/// @param sender, recipient  conditions from MailLogger::genDomainFilter
std::string HourCountsQuery(const std::string& schema, const std::string& column,
                            std::int64_t since, const std::string& condition,
                            const std::string& sender, const std::string& recipient);

/// Saves hour counts, from a query over all files, as threats of a class by their type.
std::string SaveThreatsCommand(const MailClass& mail_class, const std::string& counts);

/// Saves hour counts of a class as addresses, in lower case.
///
/// @param column  "sender" or "recipient"
std::string SaveAddressesCommand(const MailClass& mail_class, const std::string& column,
                                 const std::string& counts);

/// Lists hour counts by source address.
std::string OriginsQuery(const std::string& counts);

// Each sums the days up from the day, in local time, that `since` lies in.
std::string SumUpThreatsCommand(std::int64_t since);
std::string SumUpAddressesCommand(std::int64_t since);
std::string SumUpOriginsCommand(std::int64_t since);

/// Removes what is older than 29 days.
std::string RemoveOldCommand(const char* table);

}  // namespace statistic_log
