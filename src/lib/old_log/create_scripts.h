#pragma once

#include <string>

namespace statistic_log {

/// The scripts that make the engine's files. Those of the logs make them as their first versions
/// were, with PRAGMA user_version 0: whoever opens such a file as a store upgrades it in place.
std::string MailLogScript();
std::string SecurityLogScript();
std::string StatisticScript();
std::string SecurityStatisticScript();

}  // namespace statistic_log
