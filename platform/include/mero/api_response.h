#pragma once

#include <json/value.h>

namespace MERO {

/// The answer to one call of the web API. A new one is a success with a null body, whose reply is
/// to be written.
///
/// One thread uses it at a time.
class APIResponse {
 public:
    /// 0 when the call succeeded, else its error code.
    int GetError() const { return error_; }

    /// A copy of the body: the payload of a success, what is told about a failure otherwise.
    Json::Value GetBody() const { return body_; }

    /// Records the success of the call with its payload.
    void SetSuccess(const Json::Value& data);

    /// Records the failure of the call.
    ///
    /// @param code  error code; 0 makes it a success
    /// @param data  what is told about the failure; becomes the body
    void SetError(int code, const Json::Value& data = Json::Value());

    /// Replaces the body and leaves the error code as it is.
    void SetBody(const Json::Value& body) { body_ = body; }

    /// @param enable  false keeps the program from writing Reply(), because the method writes its
    ///                reply itself
    void SetEnableOutput(bool enable) { output_enabled_ = enable; }

    /// Whether the program that carries out the call is to write Reply().
    bool IsOutputEnabled() const { return output_enabled_; }

    /// The document that the client gets: `{"success":true,"data":…}` with the body, or
    /// `{"success":false,"error":{"code":…}}`, to which the body of a failure does not belong.
    Json::Value Reply() const;

 private:
    int error_ = 0;
    Json::Value body_;
    bool output_enabled_ = true;
};

}  // namespace MERO
