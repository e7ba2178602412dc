#pragma once

#include <json/value.h>
#include <mailserver-log/export.h>

#include <string>
#include <tuple>

namespace MERO {
class APIRequest;
class APIResponse;
}  // namespace MERO

namespace serverlog::webapi {

/// The reply that tells why a call failed.
///
/// @return `code` and an object whose one member "reason" is `reason`
MAILSERVER_LOG_EXPORT std::tuple<int, Json::Value> make_output(int code, std::string reason);

/// One call of a method of the web API, in one of two forms. In the request form the parameters
/// come from a request and the result goes to a response; in the JSON form the parameters are a
/// value and the result is returned.
///
/// An object serves one call and belongs to one thread. RunAPIMethod makes and runs one, with all
/// failures caught; the functions here let them pass.
class MAILSERVER_LOG_EXPORT BaseAPI {
 public:
    /// The request form. Both pointers stay the caller's, and outlive this object.
    BaseAPI(MERO::APIRequest* request, MERO::APIResponse* response);

    /// The JSON form.
    /// @param params  an object; anything else holds no parameter
    explicit BaseAPI(const Json::Value& params);

    virtual ~BaseAPI() = default;
    BaseAPI(const BaseAPI&) = delete;
    BaseAPI& operator=(const BaseAPI&) = delete;

    /// Reads the parameters in the request form.
    ///
    /// @return 0 and an object, or the code of a failure and what is told about it; so do the next
    ///         two functions
    virtual std::tuple<int, Json::Value> ReadRequest() = 0;

    /// Reads the parameters in the JSON form.
    virtual std::tuple<int, Json::Value> ReadRequestFromJson() = 0;

    /// Does the work.
    ///
    /// @return on success 0 and the payload
    virtual std::tuple<int, Json::Value> Execute() = 0;

    /// Runs the call in the request form: reads the parameters, does the work, and tells the
    /// response of its end. With the output off only a failure of reading is told: a method that
    /// writes its reply itself has begun it by then.
    void RunByAPIRequest();

    /// Runs the call in the JSON form.
    ///
    /// @return what Execute gives, or what ReadRequestFromJson gives when that failed
    std::tuple<int, Json::Value> RunByJson();

    /// Lets the frame write its own reply, as it does at first.
    void EnableOutput();

    /// Keeps the frame from writing a reply.
    void DisableOutput();

    /// The token that the client sent along in the header X-MERO-TOKEN; empty when there is none
    /// and in the JSON form.
    std::string mero_token() const;

 protected:
    MERO::APIRequest* request_ = nullptr;    ///< null in the JSON form
    MERO::APIResponse* response_ = nullptr;  ///< null in the JSON form
    Json::Value json_params_;                ///< an empty object in the request form
    bool output_enabled_ = true;             ///< whether the frame writes the reply

 private:
    void SetOutput(bool enabled);
};

}  // namespace serverlog::webapi
