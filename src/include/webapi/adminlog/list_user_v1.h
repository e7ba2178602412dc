#pragma once

#include <json/value.h>
#include <mailserver-log/export.h>
#include <mailserver-log/webapi/base_api.h>

#include <string>
#include <tuple>
#include <unordered_set>

namespace serverlog::webapi::adminlog {

/// Lists the users that the admin log names, each once and in no set order.
///
/// The one parameter is "db_path", as that of List_v1. The payload holds "users", objects of
/// "user".
class MAILSERVER_LOG_EXPORT ListUser_v1 : public BaseAPI {
 public:
    using BaseAPI::BaseAPI;

    std::tuple<int, Json::Value> ReadRequest() override;
    std::tuple<int, Json::Value> ReadRequestFromJson() override;

    /// Unlike the other methods it opens the store as whoever the process is.
    std::tuple<int, Json::Value> Execute() override;

 private:
    static Json::Value ResponseBuilder(const std::unordered_set<std::string>& users);

    std::string db_path_;
};

}  // namespace serverlog::webapi::adminlog
