#include <mailserver-log/webapi/base_db_query_api.h>
#include <mero/api_parameter_factory.h>
#include <mero/api_request.h>

#include <algorithm>

#include "utils/strings.h"
#include "utils/time.h"

namespace serverlog::webapi {

using merodbquery::Condition;

namespace {

std::tuple<int, Json::Value> Success() {
    return {0, Json::objectValue};
}

Condition DateBound(const char* op, const std::string& day) {
    return Condition::ConditionFactory<std::string>(
        "date", op, std::to_string(utils::ConvertTimeStringToTime(day)));
}

}  // namespace

std::tuple<int, Json::Value> BaseDBQueryAPI::ReadRequest() {
    const std::tuple<int, Json::Value> common = ReadCommonRequest();
    return std::get<0>(common) != 0 ? common : ReadAdvanceRequest();
}

std::tuple<int, Json::Value> BaseDBQueryAPI::ReadRequestFromJson() {
    const std::tuple<int, Json::Value> common = ReadCommonRequest();
    return std::get<0>(common) != 0 ? common : ReadAdvanceRequestFromJson();
}

std::tuple<int, Json::Value> BaseDBQueryAPI::ReadAdvanceRequest() {
    return Success();
}

std::tuple<int, Json::Value> BaseDBQueryAPI::ReadAdvanceRequestFromJson() {
    return Success();
}

MERO::APIParameter<std::string> BaseDBQueryAPI::GetAPIParam(const std::string& key) {
    return request_ == nullptr ? MERO::APIParameterFactoryBasicImpl<std::string>::FromJson(
                                     json_params_, key, MERO::PARAM_OPTIONAL, nullptr)
                               : request_->GetAndCheckString(key, MERO::PARAM_OPTIONAL, nullptr);
}

MERO::APIParameter<int> BaseDBQueryAPI::GetAPIIntParam(const std::string& key) {
    return request_ == nullptr ? MERO::APIParameterFactoryBasicImpl<int>::FromJson(
                                     json_params_, key, MERO::PARAM_OPTIONAL, nullptr)
                               : request_->GetAndCheckInt(key, MERO::PARAM_OPTIONAL, nullptr);
}

void BaseDBQueryAPI::ReadParam(const std::string& key, std::string& field) {
    const auto param = GetAPIParam(key);
    if (!param.IsInvalid()) {
        field = param.Get();
    }
}

void BaseDBQueryAPI::ReadParam(const std::string& key, int& field) {
    const auto param = GetAPIIntParam(key);
    if (!param.IsInvalid()) {
        field = param.Get();
    }
}

std::tuple<int, Json::Value> BaseDBQueryAPI::ReadCommonRequest() {
    int limit = static_cast<int>(limit_);
    ReadParam("limit", limit);
    limit_ = limit;
    ReadParam("offset", offset_);
    ReadParam("sort_by", sort_by_);
    ReadParam("sort_direction", sort_direction_);
    ReadParam("action", action_);
    ReadParam("query", query_);
    ReadParam("date_from", date_from_);
    ReadParam("date_to", date_to_);
    query_ = utils::UTF8StrUpper(utils::Trim(query_));
    return Success();
}

bool BaseDBQueryAPI::IsAdvanceSearch() const {
    return action_.empty() ? query_.empty() : action_ != "find";
}

std::string BaseDBQueryAPI::GetSort(const std::vector<std::string>& columns) {
    const std::string column = SortBy(sort_by_);
    const bool is_column = std::find(columns.begin(), columns.end(), column) != columns.end();
    return is_column ? column : std::string();
}

Condition BaseDBQueryAPI::GetCond(const std::vector<std::string>& columns) {
    const bool advance = IsAdvanceSearch();
    const ConditionTable table = advance ? AdvanceSearch() : SimpleSearch();
    Condition condition = Condition::Null();
    for (const std::string& column : columns) {
        const auto found = table.find(column);
        if (found != table.end()) {
            condition = advance ? condition && found->second() : condition || found->second();
        }
    }
    return condition;
}

Condition BaseDBQueryAPI::DateCondition() const {
    Condition condition = Condition::Null();
    if (!date_from_.empty()) {
        condition = condition && DateBound(">=", date_from_);
    }
    if (!date_to_.empty()) {
        // The start of that day and no later, on purpose: clients send the day behind the last one.
        condition = condition && DateBound("<=", date_to_);
    }
    return condition;
}

}  // namespace serverlog::webapi
