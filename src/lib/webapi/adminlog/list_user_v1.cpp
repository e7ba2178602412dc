#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/webapi/adminlog/list_user_v1.h>
#include <mero/api_parameter_factory.h>
#include <mero/api_request.h>

#include "webapi/open_store.h"

namespace serverlog::webapi::adminlog {

namespace {

constexpr char kPathKey[] = "db_path";
constexpr const char* kDefaultPath = db::StoreTraits<db::AdminLogDB>::kPath;

}  // namespace

std::tuple<int, Json::Value> ListUser_v1::ReadRequest() {
    const auto path = request_->GetAndCheckString(kPathKey, MERO::PARAM_OPTIONAL, nullptr);
    db_path_ = path.IsSet() && !path.IsInvalid() ? path.Get() : kDefaultPath;
    return {0, Json::objectValue};
}

std::tuple<int, Json::Value> ListUser_v1::ReadRequestFromJson() {
    const auto path = MERO::APIParameterFactoryBasicImpl<std::string>::FromJson(
        json_params_, kPathKey, MERO::PARAM_OPTIONAL, nullptr);
    // Unlike in the request form an empty path is none.
    db_path_ = path.Get().empty() ? kDefaultPath : path.Get();
    return {0, Json::objectValue};
}

std::tuple<int, Json::Value> ListUser_v1::Execute() {
    internal::OpenStore<db::AdminLogDB> opened(db_path_, internal::LongTermFile::kAsItIs);
    db::AdminLogDB& store = opened.Get();
    // Row by row: a long-term file may hold millions of them, and a handful of users.
    record::AdminLog record;
    db::UnionAllSelectQuery query = store.MainTable().UnionStepList(
        merodbquery::Condition::Null(), "user", "DESC", 0, -1, store.Schemas(), record);
    query.ExecuteWithoutPreFetch();
    std::unordered_set<std::string> users;
    while (query.Fetch()) {
        users.insert(record.user);
    }
    return {0, ResponseBuilder(users)};
}

Json::Value ListUser_v1::ResponseBuilder(const std::unordered_set<std::string>& users) {
    Json::Value payload;
    Json::Value& list = payload["users"] = Json::arrayValue;
    for (const std::string& user : users) {
        Json::Value element;
        element["user"] = user;
        list.append(element);
    }
    return payload;
}

}  // namespace serverlog::webapi::adminlog
