#include "log/adminlog/toolkit/old_state.h"

#include "log/adminlog/toolkit/tolerant_reading.h"
#include "utils/merosdk/run_api.h"

namespace serverlog::log::adminlog {

namespace {

constexpr int kApiVersion = 1;

}  // namespace

Json::Value LoadOldState(char const* api, char const* method, Json::Value const& query) {
    Json::Value data = utils::CallApiGetData(api, method, query, kApiVersion);
    return data.isObject() ? data : Json::Value();
}

Json::Value WholeListQuery() {
    Json::Value query;
    query["offset"] = 0;
    query["limit"] = -1;
    return query;
}

Json::Value IndexedEntries(Json::Value const& list, std::string const& key) {
    Json::Value entries(Json::objectValue);
    for (Json::Value const& entry : list) {
        std::string const text = TryGetKeyVal(entry, key);
        if (!text.empty()) {
            entries[text] = entry;
        }
    }
    return entries;
}

}  // namespace serverlog::log::adminlog
