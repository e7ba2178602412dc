#include "log/adminlog/tabs/mailsearch/search_task.h"

#include <mailserver-log/exception/exception.h>

#include "log/adminlog/tabs/mailsearch/search_filter.h"
#include "log/adminlog/tabs/mailsearch/templates.h"
#include "log/adminlog/toolkit/old_state.h"
#include "log/adminlog/toolkit/reading.h"
#include "log/adminlog/toolkit/tolerant_reading.h"
#include "utils/json_text.h"

#include <set>

namespace serverlog::log::adminlog::mailsearch {

namespace {

std::multiset<std::string> UserSet(Json::Value const& users) {
    std::multiset<std::string> texts;
    for (Json::Value const& user : users) {
        texts.insert(utils::ToJsonText(user));
    }
    return texts;
}

}  // namespace

Json::Value TaskInfo(Json::Value const& params) {
    Json::Value query;
    query["id"] = TryGetObjectVal(params, "id");
    if (query["id"].isNull()) {
        query["id"] = TryGetObjectVal(params, "task_id");
    }
    if (query["id"].isNull()) {
        throw make_exception<ETag::Log>(LogError::LoadOldSettingsFail,
                                        "loading search task is lack of params");
    }
    Json::Value const task =
        LoadOldState("MERO.PostCubeServer.Audit.SearchTask", "get", query)["task"];
    return task.isObject() ? task : Json::Value();
}

Json::Value Download(Json::Value const& params) {
    Json::Value info = TaskInfo(params);
    info["force_log"] = true;
    return info;
}

StatementRows TranslateEdit(std::string const& statement, Json::Value const& old_info,
                            Json::Value const& params, Json::Value const& diff,
                            Json::Value const& /*body*/) {
    std::string const name = GetKeyVal(old_info, "name");
    if (statement == kConditionsEdited && diff.isMember("filter") &&
        !IsSameFilter(old_info["filter"], params["filter"])) {
        return {{name}};
    }
    if (statement == kUsersEdited && diff.isMember("users") &&
        UserSet(old_info["users"]) != UserSet(params["users"])) {
        return {{name}};
    }
    if (statement == kRenamed && diff.isMember("name") && GetKeyVal(params, "name") != name) {
        return {{name, GetKeyVal(params, "name")}};
    }
    return Ignore();
}

}  // namespace serverlog::log::adminlog::mailsearch
