#pragma once

#include <merodbquery/condition.h>

#include <map>
#include <string>
#include <vector>

#include "stores/stores.h"

namespace serverlog::program {

/// How a filter compares its column with what was given.
enum class Match {
    kPart,    ///< the column holds the text, in any letter case
    kWhole,   ///< the column is the text
    kNumber,  ///< the column is the number
    kStatus,  ///< the column is the status of that word or number
};

/// A filter option of one store.
struct Filter {
    const char* option;  ///< without its hyphens
    const char* column;
    Match match;
};

/// The words of the mail log's status numbers, each at the index of its number.
inline constexpr const char* kStatusWords[] = {"send", "receive", "bounce", "resend"};

/// The filter options of each store.
const std::vector<Filter>& Filters(const AdminStore& store);
const std::vector<Filter>& Filters(const MailStore& store);
const std::vector<Filter>& Filters(const SecurityStore& store);

/// The conjunction of the filters that were given.
///
/// @param filters  those of the store
/// @param given    texts by the option's name
///
/// Throws CLI::ValidationError for an option that is none of `filters`, or a text that is no number
/// or status where one is wanted.
merodbquery::Condition FilterCondition(const std::vector<Filter>& filters,
                                       const std::map<std::string, std::string>& given);

/// That any of the columns holds the text, in any letter case.
merodbquery::Condition FindCondition(const std::vector<std::string>& columns,
                                     const std::string& text);

}  // namespace serverlog::program
