#include "listing/list_filters.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <iterator>

namespace serverlog::program {

namespace {

using merodbquery::Condition;

int Number(const Filter& filter, const std::string& text) {
    int number = 0;
    if (!CLI::detail::lexical_cast(text, number)) {
        throw CLI::ValidationError(std::string("--") + filter.option, text + " is no number");
    }
    return number;
}

int Status(const Filter& filter, const std::string& text) {
    const auto* word = std::find(std::begin(kStatusWords), std::end(kStatusWords), text);
    if (word != std::end(kStatusWords)) {
        return static_cast<int>(word - std::begin(kStatusWords));
    }
    int number = 0;
    if (!CLI::detail::lexical_cast(text, number)) {
        throw CLI::ValidationError(std::string("--") + filter.option,
                                   text +
                                       " is no status; take send, receive, bounce, resend or a "
                                       "number");
    }
    return number;
}

Condition One(const Filter& filter, const std::string& text) {
    switch (filter.match) {
        case Match::kPart:
            return Condition::HasSubstring(filter.column, text);
        case Match::kWhole:
            return Condition::Equal(filter.column, text.c_str());
        case Match::kNumber:
            return Condition::ConditionFactory(filter.column, "=", Number(filter, text));
        case Match::kStatus:
            return Condition::ConditionFactory(filter.column, "=", Status(filter, text));
    }
    return Condition::Null();
}

}  // namespace

const std::vector<Filter>& Filters(const AdminStore& /*store*/) {
    static const std::vector<Filter> filters = {
        {"user", "user", Match::kPart},       {"ip", "ip", Match::kPart},
        {"server", "server", Match::kPart},   {"statement", "statement", Match::kPart},
        {"type", "tab_type", Match::kNumber},
    };
    return filters;
}

const std::vector<Filter>& Filters(const MailStore& /*store*/) {
    static const std::vector<Filter> filters = {
        {"from", "mail_from", Match::kPart},    {"to", "mail_to", Match::kPart},
        {"subject", "subject", Match::kPart},   {"status", "status", Match::kStatus},
        {"host", "host", Match::kPart},         {"original-to", "ori_mail_to", Match::kPart},
        {"queue-id", "queue_id", Match::kPart}, {"message-id", "message_id", Match::kPart},
    };
    return filters;
}

const std::vector<Filter>& Filters(const SecurityStore& /*store*/) {
    static const std::vector<Filter> filters = {
        {"sender", "sender", Match::kPart},   {"recipient", "recipient", Match::kPart},
        {"subject", "subject", Match::kPart}, {"type", "type", Match::kWhole},
        {"source", "src", Match::kPart},      {"event", "event", Match::kPart},
        {"host", "host", Match::kPart},
    };
    return filters;
}

Condition FilterCondition(const std::vector<Filter>& filters,
                          const std::map<std::string, std::string>& given) {
    Condition condition = Condition::Null();
    for (const auto& [option, text] : given) {
        const auto filter =
            std::find_if(filters.begin(), filters.end(),
                         [&name = option](const Filter& row) { return name == row.option; });
        if (filter == filters.end()) {
            throw CLI::ValidationError("--" + option, "this store has no such filter");
        }
        condition = condition && One(*filter, text);
    }
    return condition;
}

Condition FindCondition(const std::vector<std::string>& columns, const std::string& text) {
    Condition condition = Condition::Null();
    for (const std::string& column : columns) {
        condition = condition || Condition::HasSubstring(column, text);
    }
    return condition;
}

}  // namespace serverlog::program
