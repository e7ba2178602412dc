#include <mailserver-log/utils/error_line.h>
#include <mailserver-log/webapi/emaillog/list.h>
#include <mailserver/domain_list.h>

#include <list>
#include <string>
#include <string_view>

#include "utils/strings.h"
#include "webapi/base_db_query_api_definitions.h"
#include "webapi/list_payload.h"
#include "webapi/sort_field.h"
#include "webapi/time_words.h"

namespace serverlog::webapi::emaillog {

using merodbquery::Condition;

namespace {

constexpr char kReason[] = "list postcube server mail log record";

constexpr internal::SortField kSortFields[] = {
    {"time", "date"},       {"mail_size", "size"},
    {"mail_host", "host"},  {"mail_status", "status"},
    {"date", "date"},       {"message_id", "message_id"},
    {"subject", "subject"}, {"mail_from", "mail_from"},
    {"mail_to", "mail_to"}, {"ori_mail_to", "ori_mail_to"},
};

struct StatusWord {
    int number;
    std::string_view word;
};

/// What is stored. 4, rejected, has no word, on purpose.
constexpr StatusWord kStatusWords[] = {
    {0, "send"},
    {1, "receive"},
    {2, "bounce"},
    {3, "resend"},
};
constexpr int kReceived = 1;

/// What can be asked for besides.
constexpr int kAny = -1;
constexpr int kInternalMail = 5;
constexpr StatusWord kFilterWords[] = {
    {kAny, "any"},
    {kInternalMail, "internal_mail"},
};

template <std::size_t Count>
const StatusWord* FindWord(const StatusWord (&words)[Count], const std::string& word) {
    for (const StatusWord& row : words) {
        if (word == row.word) {
            return &row;
        }
    }
    return nullptr;
}

int FilterCode(const std::string& word) {
    for (const StatusWord* row : {FindWord(kStatusWords, word), FindWord(kFilterWords, word)}) {
        if (row != nullptr) {
            return row->number;
        }
    }
    // Also for a search that has no status at all, on purpose. Readers of the log know this place.
    utils::WriteErrorLine("lib/webapi/emaillog/list", 154,
                          "status error, transform to \"any\" status");
    return kAny;
}

Condition Compare(const char* column, const char* op, const std::string& value) {
    return Condition::ConditionFactory<std::string>(column, op, value);
}

Condition FromOwnDomain() {
    std::list<std::string> domains;
    Condition condition = Condition::Null();
    if (loadAllUtf8DomainList(domains) < 0) {
        return condition;
    }
    for (const std::string& domain : domains) {
        // The second "%" matches like one.
        condition = condition || Compare("mail_from", "LIKE", "%%@" + domain);
    }
    return condition;
}

/// Clients get the members sorted by their names.
constexpr auto kDescribe = [](const record::MailLog& record, internal::TimeFormat& times,
                              auto& element) {
    const internal::TimeWords words = times.Of(record.date);
    element.Add("date", words.date);
    element.Add("mail_from", record.mail_from);
    element.Add("mail_host", record.host);
    element.Add("mail_size", utils::SizeToKb(record.size));
    element.Add("mail_status", List::StatusInt2Str(record.status));
    element.Add("mail_to", record.mail_to);
    element.Add("message_id", record.message_id);
    element.Add("ori_mail_to",
                record.ori_mail_to.empty() ? std::string_view("-") : record.ori_mail_to);
    element.Add("subject", record.subject);
    element.Add("time", words.time);
};

}  // namespace

std::tuple<int, Json::Value> List::ReadAdvanceRequest() {
    return ReadAdvanceRequestFromJson();
}

std::tuple<int, Json::Value> List::ReadAdvanceRequestFromJson() {
    ReadParam("size_from", size_from_);
    ReadParam("size_to", size_to_);
    ReadParam("db_path", db_path_);
    ReadParam("mail_from", mail_from_);
    ReadParam("mail_to", mail_to_);
    ReadParam("message_id", message_id_);
    ReadParam("ori_mail_to", ori_mail_to_);
    ReadParam("status", status_);
    ReadParam("subject", subject_);
    return {0, Json::objectValue};
}

std::string List::SortBy(const std::string& sort_by) {
    return internal::SortColumn(kSortFields, sort_by);
}

std::string List::StatusInt2Str(int status) {
    for (const StatusWord& row : kStatusWords) {
        if (status == row.number) {
            return std::string(row.word);
        }
    }
    return "unknow";
}

BaseDBQueryAPI::ConditionTable List::SimpleSearch() {
    if (query_.empty()) {
        return {};
    }
    const std::string address = utils::AddressToUtf8(query_);
    ConditionTable table;
    for (const char* column : {"mail_from", "mail_to", "ori_mail_to"}) {
        table[column] = [column, address] { return Condition::HasSubstring(column, address); };
    }
    for (const char* column : {"message_id", "subject"}) {
        table[column] = [this, column] { return Condition::HasSubstring(column, query_); };
    }
    return table;
}

BaseDBQueryAPI::ConditionTable List::AdvanceSearch() {
    ConditionTable table;
    const auto add = [&table](const char* key, const char* column, const std::string& text) {
        if (!text.empty()) {
            table[key] = [column, text] { return Condition::HasSubstring(column, text); };
        }
    };
    add("message_id", "message_id", message_id_);
    add("mail_to", "mail_to", utils::AddressToUtf8(mail_to_));
    // In the place of the recipient's filter, on purpose: beside a sender it has no effect.
    add("mail_to", "mail_from", utils::AddressToUtf8(mail_from_));
    add("subject", "subject", subject_);
    add("ori_mail_to", "ori_mail_to", utils::AddressToUtf8(ori_mail_to_));
    table["status"] = [this] { return StatusCondition(); };
    table["size"] = [this] { return SizeCondition(); };
    table["date"] = [this] { return DateCondition(); };
    return table;
}

Condition List::StatusCondition() const {
    const int code = FilterCode(status_);
    if (code == kAny) {
        return Condition::Null();
    }
    if (code == kInternalMail) {
        return Compare("status", "=", std::to_string(kReceived)) && FromOwnDomain();
    }
    return Compare("status", "=", std::to_string(code));
}

Condition List::SizeCondition() const {
    Condition condition = Condition::Null();
    if (size_from_ >= 0) {
        condition = condition && Compare("size", ">=", std::to_string(size_from_));
    }
    if (size_to_ >= 0) {
        condition = condition && Compare("size", "<", std::to_string(size_to_));
    }
    return condition;
}

std::tuple<int, Json::Value> List::Execute() {
    return {0, ResponseBuilder(DbList(kReason))};
}

std::string List::ExecuteAsText() {
    return ResponseText(DbList(kReason));
}

List::LogRows List::DbList(const std::string& reason) {
    return ListStore<db::MailLogDB>(db_path_, reason);
}

Json::Value List::ResponseBuilder(const LogRows& rows) const {
    return internal::ListPayload(rows, offset_, kDescribe);
}

std::string List::ResponseText(const LogRows& rows) const {
    return internal::ListPayloadText(rows, offset_, kDescribe);
}

}  // namespace serverlog::webapi::emaillog
