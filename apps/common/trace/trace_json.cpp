#include "trace/trace_json.h"

#include <mailserver-log/record/columns.h>

#include "stores/stores.h"

namespace serverlog::program {

namespace {

template <class Store>
Json::Value WithStore(const typename Store::Record& row) {
    Json::Value value = record::ToJson(row);
    value["store"] = Store::kName;
    return value;
}

}  // namespace

Json::Value TraceJson(const record::MailLog& row) {
    return WithStore<MailStore>(row);
}

Json::Value TraceJson(const record::SecurityLog& row) {
    return WithStore<SecurityStore>(row);
}

}  // namespace serverlog::program
