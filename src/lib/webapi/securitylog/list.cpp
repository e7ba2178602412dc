#include <mailserver-log/webapi/securitylog/list.h>

#include <algorithm>
#include <iterator>

#include "utils/strings.h"
#include "webapi/base_db_query_api_definitions.h"
#include "webapi/list_payload.h"
#include "webapi/sort_field.h"
#include "webapi/time_words.h"

namespace serverlog::webapi::securitylog {

using merodbquery::Condition;

namespace {

constexpr char kReason[] = "list postcube server security log record";

constexpr internal::SortField kSortFields[] = {
    {"time", "date"},           {"source", "src"},    {"mail_host", "host"},  {"date", "date"},
    {"recipient", "recipient"}, {"sender", "sender"}, {"subject", "subject"}, {"type", "type"},
};

constexpr const char* kTypes[] = {"reject",    "spam", "virus", "content", "dnsbl", "attachment",
                                  "blacklist", "spf",  "dkim",  "dmarc",   "mcp"};

/// Matches a type within a longer word too, and for an unknown one every type that is there,
/// without a word; both on purpose.
Condition TypeCondition(const std::string& type) {
    const bool is_known = std::find(std::begin(kTypes), std::end(kTypes), type) != std::end(kTypes);
    return Condition::HasSubstring("type", is_known ? type : "");
}

/// Clients get the members sorted by their names.
constexpr auto kDescribe = [](const record::SecurityLog& record, internal::TimeFormat& times,
                              auto& element) {
    const internal::TimeWords words = times.Of(record.date);
    element.Add("date", words.date);
    element.Add("event", record.event);
    element.Add("mail_host", record.host);
    element.Add("recipient", record.recipient);
    element.Add("sender", record.sender);
    element.Add("source", record.src);
    element.Add("subject", record.subject);
    element.Add("time", words.time);
    element.Add("type", record.type);
};

}  // namespace

std::tuple<int, Json::Value> List::ReadAdvanceRequest() {
    return ReadAdvanceRequestFromJson();
}

std::tuple<int, Json::Value> List::ReadAdvanceRequestFromJson() {
    ReadParam("db_path", db_path_);
    ReadParam("lang", lang_);
    ReadParam("recipient", recipient_);
    ReadParam("sender", sender_);
    ReadParam("src", src_);
    ReadParam("subject", subject_);
    ReadParam("type", type_);
    return {0, Json::objectValue};
}

std::string List::SortBy(const std::string& sort_by) {
    return internal::SortColumn(kSortFields, sort_by);
}

BaseDBQueryAPI::ConditionTable List::SimpleSearch() {
    if (query_.empty()) {
        return {};
    }
    const std::string address = utils::AddressToUtf8(query_);
    ConditionTable table;
    for (const char* column : {"src", "event", "subject"}) {
        table[column] = [this, column] { return Condition::HasSubstring(column, query_); };
    }
    for (const char* column : {"sender", "recipient"}) {
        table[column] = [column, address] { return Condition::HasSubstring(column, address); };
    }
    return table;
}

BaseDBQueryAPI::ConditionTable List::AdvanceSearch() {
    ConditionTable table;
    const auto add = [&table](const char* column, const std::string& text) {
        if (!text.empty()) {
            table[column] = [column, text] { return Condition::HasSubstring(column, text); };
        }
    };
    add("recipient", utils::AddressToUtf8(recipient_));
    add("sender", utils::AddressToUtf8(sender_));
    add("src", src_);
    add("subject", subject_);
    if (!type_.empty()) {
        table["type"] = [this] { return TypeCondition(type_); };
    }
    table["date"] = [this] { return DateCondition(); };
    return table;
}

std::tuple<int, Json::Value> List::Execute() {
    return {0, ResponseBuilder(DbList(kReason))};
}

std::string List::ExecuteAsText() {
    return ResponseText(DbList(kReason));
}

List::LogRows List::DbList(const std::string& reason) {
    return ListStore<db::SecurityLogDB>(db_path_, reason);
}

Json::Value List::ResponseBuilder(const LogRows& rows) const {
    return internal::ListPayload(rows, offset_, kDescribe);
}

std::string List::ResponseText(const LogRows& rows) const {
    return internal::ListPayloadText(rows, offset_, kDescribe);
}

}  // namespace serverlog::webapi::securitylog
