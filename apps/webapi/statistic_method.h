#pragma once

#include "routes.h"

namespace serverlog::endpoint {

/// What the statistics have counted, as program::StatisticRow tells it: an object that has for each
/// kind of rows an array of objects with "time", "group", "name" and "count". It is empty as long
/// as nothing has been counted.
///
/// Parameters, all optional: "scale" ("day"), "time_from" and "time_to", the range of
/// program::TimeRange. Throw ApiError with kBadRequest for one that can't be used.
void GetTraffic(Call& call);
void GetThreat(Call& call);

}  // namespace serverlog::endpoint
