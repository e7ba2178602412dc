#include <mailserver-log/webapi/adminlog/list_v1.h>
#include <mds/localized_string_parser.h>

#include "log/adminlog/operations/tab_titles.h"
#include "log/adminlog/toolkit/texts.h"
#include "utils/files.h"
#include "utils/strings.h"
#include "webapi/base_db_query_api_definitions.h"
#include "webapi/list_payload.h"
#include "webapi/sort_field.h"
#include "webapi/time_words.h"

namespace serverlog::webapi::adminlog {

using merodbquery::Condition;

namespace {

constexpr char kReason[] = "list postcube server admin log record";

// "statement" is none of them, on purpose.
constexpr internal::SortField kSortFields[] = {
    {"date", "date"}, {"tab_type", "tab_type"}, {"user", "user"},
    {"ip", "ip"},     {"server", "server"},
};

/// Clients get the members sorted by their names.
constexpr auto kDescribe = [](const record::AdminLog& record, internal::TimeFormat& times,
                              auto& element) {
    element.Add("date", times.TextOf(static_cast<long>(record.date)));
    element.Add("ip", record.ip);
    element.Add("server", record.server);
    element.Add("statement", record.statement);
    element.Add("tab_type", record.tab_type);
    element.Add("user", record.user);
};

}  // namespace

std::tuple<int, Json::Value> List_v1::ReadAdvanceRequest() {
    // Before "lang" is read, on purpose: the texts are the English ones whatever the request asks
    // for, like the statements that they stand beside.
    SetLocalizedString();
    return ReadAdvanceRequestFromJson();
}

std::tuple<int, Json::Value> List_v1::ReadAdvanceRequestFromJson() {
    ReadParam("db_path", db_path_);
    ReadParam("ip", ip_);
    ReadParam("lang", lang_);
    ReadParam("server", server_);
    ReadParam("statement", statement_);
    ReadParam("tab_type", tab_type_);
    ReadParam("user", user_);
    return {0, Json::objectValue};
}

void List_v1::SetLocalizedString() {
    namespace texts = log::adminlog;
    if (!utils::Exist(texts::kPostCubeTexts) || !utils::Exist(texts::kSystemTexts)) {
        return;
    }
    // Not the texts that the statements are made with: those are kept for the life of the process,
    // and a list is to show what an update has installed.
    texts_ = MDS::LocalizedStringParser::ParseTexts(texts::kPostCubeTexts + lang_);
    const Json::Value& product = texts_;
    const Json::Value system = MDS::LocalizedStringParser::ParseTexts(texts::kSystemTexts + lang_);
    for (const texts::TabTitle& tab : texts::kTabTitles) {
        tab_titles_[std::to_string(tab.tab_type)] =
            (tab.is_system_text ? system : product)[tab.section][tab.key];
    }
}

void List_v1::SetTestString(const Json::Value& titles) {
    tab_titles_ = titles;
}

std::string List_v1::SortBy(const std::string& sort_by) {
    return internal::SortColumn(kSortFields, sort_by);
}

BaseDBQueryAPI::ConditionTable List_v1::SimpleSearch() {
    if (query_.empty()) {
        return {};
    }
    ConditionTable table;
    table["tab_type"] = [this] { return TitleCondition(); };
    for (const char* column : {"statement", "user", "ip", "server"}) {
        table[column] = [this, column] { return Condition::HasSubstring(column, query_); };
    }
    return table;
}

Condition List_v1::TitleCondition() const {
    Condition condition = Condition::Null();
    for (const std::string& tab : tab_titles_.getMemberNames()) {
        const std::string title = utils::UTF8StrUpper(tab_titles_[tab].asString());
        if (title.find(query_) != std::string::npos) {
            // "And" on purpose, in the middle of a search by "or": a text that is in two titles
            // does not say which tab is meant, and finds none.
            condition = condition && Condition::Equal("tab_type", tab.c_str());
        }
    }
    return condition;
}

BaseDBQueryAPI::ConditionTable List_v1::AdvanceSearch() {
    ConditionTable table;
    const auto add = [&table](const char* column, const std::string& value, auto make) {
        if (!value.empty()) {
            table[column] = [column, &value, make] { return make(column, value); };
        }
    };
    const auto equals = [](const char* column, const std::string& value) {
        return Condition::ConditionFactory<std::string>(column, "=", value);
    };
    add("ip", ip_, Condition::HasSubstring);
    add("statement", statement_, Condition::HasSubstring);
    add("server", server_, Condition::HasSubstring);
    add("user", user_, equals);
    add("tab_type", tab_type_, equals);
    table["date"] = [this] { return DateCondition(); };
    return table;
}

std::tuple<int, Json::Value> List_v1::Execute() {
    return {0, ResponseBuilder(DbList(kReason))};
}

std::string List_v1::ExecuteAsText() {
    return ResponseText(DbList(kReason));
}

List_v1::LogRows List_v1::DbList(const std::string& reason) {
    return ListStore<db::AdminLogDB>(db_path_, reason);
}

Json::Value List_v1::ResponseBuilder(const LogRows& rows) const {
    return internal::ListPayload(rows, offset_, kDescribe);
}

std::string List_v1::ResponseText(const LogRows& rows) const {
    return internal::ListPayloadText(rows, offset_, kDescribe);
}

}  // namespace serverlog::webapi::adminlog
