#include <mailserver-log/exception/exception.h>
#include <mailserver-log/utils/error_line.h>
#include <mailserver-log/webapi/adminlog/export_v1.h>
#include <mailserver-log/webapi/adminlog/list_user_v1.h>
#include <mailserver-log/webapi/adminlog/list_v1.h>
#include <mailserver-log/webapi/api_runner.h>
#include <mailserver-log/webapi/emaillog/export.h>
#include <mailserver-log/webapi/emaillog/list.h>
#include <mailserver-log/webapi/securitylog/export.h>
#include <mailserver-log/webapi/securitylog/list.h>
#include <mero/api_response.h>

#include <string>

namespace serverlog::webapi {

namespace {

constexpr char kUnknownFailure[] = "Unknown Failure!";

/// Places in the log lines: readers of the log know them, so they stay as they are wherever the
/// code goes.
constexpr char kSource[] = "lib/webapi/api_runner";
enum Line { kRequestDB = 20, kRequestUnknown = 23, kJsonDB = 36, kJsonUnknown = 39 };

void LogFailure(Line line, const Exception<ETag::DB>& error) {
    utils::WriteErrorLine(kSource, line, "Log_API %s", exception_str(error).c_str());
}

void LogUnknownFailure(Line line) {
    utils::WriteErrorLine(kSource, line, kUnknownFailure);
}

}  // namespace

void RunPrepared(BaseAPI& method, MERO::APIResponse* response) {
    try {
        method.RunByAPIRequest();
    } catch (const Exception<ETag::DB>& error) {
        LogFailure(kRequestDB, error);
        response->SetError(kRunFailed, Json::Value());
    } catch (...) {
        LogUnknownFailure(kRequestUnknown);
        response->SetError(kRunFailed, Json::Value());
    }
}

namespace {

template <class Work>
std::tuple<int, Json::Value> Guarded(Work work) {
    try {
        return work();
    } catch (const Exception<ETag::DB>& error) {
        LogFailure(kJsonDB, error);
        return make_output(kRunFailed, exception_str(error));
    } catch (...) {
        LogUnknownFailure(kJsonUnknown);
        return make_output(kRunFailed, kUnknownFailure);
    }
}

}  // namespace

std::tuple<int, Json::Value> RunPrepared(BaseAPI& method) {
    return Guarded([&method] { return method.RunByJson(); });
}

template <class List>
std::tuple<int, Json::Value> RunPreparedAsText(List& method, std::string& payload) {
    return Guarded([&] {
        std::tuple<int, Json::Value> result = method.ReadRequestFromJson();
        if (std::get<0>(result) == 0) {
            payload = method.ExecuteAsText();
        }
        return result;
    });
}

template <class T>
void RunAPIMethod(MERO::APIRequest* request, MERO::APIResponse* response) {
    T method(request, response);
    RunPrepared(method, response);
}

template <class T>
std::tuple<int, Json::Value> RunAPIMethod(const Json::Value& params) {
    T method(params);
    return RunPrepared(method);
}

#define MAILSERVER_LOG_INSTANTIATE(T)                                                           \
    template MAILSERVER_LOG_EXPORT void RunAPIMethod<T>(MERO::APIRequest*, MERO::APIResponse*); \
    template MAILSERVER_LOG_EXPORT std::tuple<int, Json::Value> RunAPIMethod<T>(const Json::Value&)

MAILSERVER_LOG_INSTANTIATE(adminlog::List_v1);
MAILSERVER_LOG_INSTANTIATE(adminlog::ListUser_v1);
MAILSERVER_LOG_INSTANTIATE(adminlog::Export_v1);
MAILSERVER_LOG_INSTANTIATE(emaillog::List);
MAILSERVER_LOG_INSTANTIATE(emaillog::Export);
MAILSERVER_LOG_INSTANTIATE(securitylog::List);
MAILSERVER_LOG_INSTANTIATE(securitylog::Export);

template MAILSERVER_LOG_EXPORT std::tuple<int, Json::Value> RunPreparedAsText(adminlog::List_v1&,
                                                                              std::string&);
template MAILSERVER_LOG_EXPORT std::tuple<int, Json::Value> RunPreparedAsText(emaillog::List&,
                                                                              std::string&);
template MAILSERVER_LOG_EXPORT std::tuple<int, Json::Value> RunPreparedAsText(securitylog::List&,
                                                                              std::string&);

#undef MAILSERVER_LOG_INSTANTIATE

}  // namespace serverlog::webapi
