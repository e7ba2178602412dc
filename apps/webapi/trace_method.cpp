#include "trace_method.h"

#include <stdexcept>
#include <string>
#include <utility>

#include "api_error.h"
#include "read_params.h"
#include "trace/trace_json.h"
#include "trace/tracer.h"

namespace serverlog::endpoint {

namespace {

using merodbquery::Condition;

constexpr int kMostRows = 10000;
constexpr int kRowsUnlessAsked = 1000;

program::TraceTarget Target(const MERO::APIRequest& request) {
    const auto what = request.GetAndCheckString("what", MERO::PARAM_OPTIONAL, nullptr);
    try {
        return program::TraceTarget(what.Get());  // empty where there is none
    } catch (const std::invalid_argument&) {
        RefuseParam("what");
    }
}

Condition Times(const MERO::APIRequest& request) {
    Condition times = Condition::Null();
    if (const auto from = ReadTime(request, "time_from")) {
        times = Condition::ConditionFactory("date", ">=", *from);
    }
    if (const auto to = ReadTime(request, "time_to")) {
        times = times && Condition::ConditionFactory("date", "<", *to);
    }
    return times;
}

Json::ArrayIndex Limit(const MERO::APIRequest& request) {
    const auto limit = request.GetAndCheckInt("limit", MERO::PARAM_OPTIONAL, [](const int& number) {
        return number >= 1 && number <= kMostRows;
    });
    if (!limit.IsSet()) {
        return kRowsUnlessAsked;
    }
    if (limit.IsInvalid()) {
        RefuseParam("limit");
    }
    return static_cast<Json::ArrayIndex>(limit.Get());
}

Json::Value Rows(program::Tracer& tracer, Json::ArrayIndex limit) {
    Json::Value rows(Json::arrayValue);
    bool has_more = false;
    tracer.ForEach([&](const auto& row) {
        has_more = rows.size() == limit;
        if (!has_more) {
            rows.append(program::TraceJson(row));
        }
        return !has_more;
    });
    Json::Value data;
    data["rows"] = std::move(rows);
    data["more"] = has_more;
    return data;
}

}  // namespace

void GetTrace(Call& call) {
    const program::TraceTarget target = Target(call.request);
    const Condition times = Times(call.request);
    const Json::ArrayIndex limit = Limit(call.request);
    try {
        program::Tracer tracer(target, times);
        call.response.SetSuccess(Rows(tracer, limit));
    } catch (const program::TooManyMails& error) {
        throw ApiError(kBadRequest, HttpStatus::kBadRequest, error.what());
    }
}

}  // namespace serverlog::endpoint
