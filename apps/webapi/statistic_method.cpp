#include "statistic_method.h"

#include <algorithm>

#include "read_params.h"
#include "statistics/statistic_rows.h"

namespace serverlog::endpoint {

namespace {

using program::StatisticRow;
using program::TimeRange;
using Scales = std::vector<std::string>;

std::string Scale(const MERO::APIRequest& request, const Scales& scales) {
    const auto scale = request.GetAndCheckString("scale", MERO::PARAM_OPTIONAL, nullptr);
    if (!scale.IsSet()) {
        return "day";
    }
    if (std::find(scales.begin(), scales.end(), scale.Get()) == scales.end()) {
        RefuseParam("scale");
    }
    return scale.Get();
}

Json::Value GroupedByKind(const std::vector<StatisticRow>& rows, Json::Value data) {
    for (const StatisticRow& row : rows) {
        Json::Value value;
        value["time"] = Json::Int64(row.time);
        value["group"] = row.group;
        value["name"] = row.name;
        value["count"] = Json::Int64(row.count);
        data[row.kind].append(value);
    }
    return data;
}

using Reader = std::vector<StatisticRow> (*)(const std::string& scale, const TimeRange& range);

void Get(Call& call, const Scales& scales, Reader read, const Scales& kinds) {
    const std::string scale = Scale(call.request, scales);
    TimeRange range;
    range.from = ReadTime(call.request, "time_from").value_or(range.from);
    range.to = ReadTime(call.request, "time_to").value_or(range.to);
    Json::Value data;
    for (const std::string& kind : kinds) {
        data[kind] = Json::arrayValue;
    }
    try {
        data = GroupedByKind(read(scale, range), data);
    } catch (const program::NoStatistics&) {
        // A new mail server: nothing has been counted.
    }
    call.response.SetSuccess(data);
}

}  // namespace

void GetTraffic(Call& call) {
    Get(call, program::TrafficScales(), program::ReadTraffic, {"count", "top"});
}

void GetThreat(Call& call) {
    Get(call, program::ThreatScales(), program::ReadThreats, {"threat", "address", "origin"});
}

}  // namespace serverlog::endpoint
