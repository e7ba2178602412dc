#include <gtest/gtest.h>
#include <mailserver-log/webapi/base_api.h>
#include <mero/api_request.h>
#include <mero/api_response.h>

#include <string>

#include "support/json_value.h"
#include "support/query_call.h"
#include "support/table.h"

namespace serverlog::webapi {
namespace {

using Output = std::tuple<int, Json::Value>;

/// A method that does what its parameters say, and tells what it was asked to do.
class Method : public BaseAPI {
 public:
    using BaseAPI::BaseAPI;

    Output ReadRequest() override { return Read("request", request_->GetParams()); }
    Output ReadRequestFromJson() override { return Read("json", json_params_); }
    Output Execute() override {
        steps_ += " execute";
        return {params_["execute"].asInt(), "executed"};
    }

    std::string steps_;

 private:
    Output Read(const char* form, const Json::Value& params) {
        steps_ = form;
        params_ = params;
        return {params_["read"].asInt(), "read"};
    }

    Json::Value params_;
};

TEST(BaseAPI, RunsByRequestAndByJson) {
    // The last column is what a request has in its response when its output is off.
    const test::Table<const char*, const char*, int, const char*, const char*> runs = {
        {"{}", " execute", 0, "executed", ""},
        {R"({"execute":5})", " execute", 5, "executed", ""},
        {R"({"read":4,"execute":5})", "", 4, "read", "read"},
    };
    for (const auto& [params, steps, code, data, data_without_output] : runs) {
        for (const bool output : {true, false}) {
            SCOPED_TRACE(params + std::string(output ? " with output" : ""));
            MERO::APIRequest request = test::RequestWith(test::JsonOf(params));
            MERO::APIResponse response;
            Method by_request(&request, &response);
            Method by_json(test::JsonOf(params));
            if (!output) {
                by_request.DisableOutput();
                by_json.DisableOutput();
            }
            by_request.RunByAPIRequest();
            EXPECT_EQ(by_request.steps_, std::string("request") + steps);
            const std::string shown = output ? data : data_without_output;
            EXPECT_EQ(response.GetBody().asString(), shown);
            EXPECT_EQ(response.GetError(), shown.empty() ? 0 : code);
            EXPECT_EQ(by_json.RunByJson(), Output(code, data));
            EXPECT_EQ(by_json.steps_, std::string("json") + steps);
        }
    }
}

TEST(BaseAPI, TellsTheResponseWhetherThereIsOutput) {
    MERO::APIRequest request = test::RequestWith(Json::objectValue);
    MERO::APIResponse response;
    Method method(&request, &response);
    method.DisableOutput();
    EXPECT_FALSE(response.IsOutputEnabled());
    method.EnableOutput();
    EXPECT_TRUE(response.IsOutputEnabled());
}

TEST(BaseAPI, KnowsTheToken) {
    const MERO::APIRequest::Texts environment = {{"HTTP_X_MERO_TOKEN", "secret"}};
    MERO::APIRequest request("", 0, "", Json::objectValue, {}, environment);
    MERO::APIRequest without = test::RequestWith(Json::objectValue);
    MERO::APIResponse response;
    EXPECT_EQ(Method(&request, &response).mero_token(), "secret");
    EXPECT_EQ(Method(&without, &response).mero_token(), "");
    EXPECT_EQ(Method(Json::objectValue).mero_token(), "");
}

}  // namespace
}  // namespace serverlog::webapi
