#include <gtest/gtest.h>
#include <mailserver-log/webapi/base_api.h>
#include <mero/api_request.h>
#include <mero/api_response.h>

#include <stdexcept>
#include <string>

#include "support/json_value.h"
#include "support/query_call.h"

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

const struct {
    const char* params;
    const char* steps;
    int code;
    const char* data;
    const char* request_data_without_output;
} kRuns[] = {
    {"{}", " execute", 0, "executed", ""},
    {R"({"execute":5})", " execute", 5, "executed", ""},
    {R"({"read":4,"execute":5})", "", 4, "read", "read"},
};

TEST(BaseAPI, RunsByRequest) {
    for (const auto& run : kRuns) {
        for (const bool output : {true, false}) {
            MERO::APIRequest request = test::RequestWith(test::JsonOf(run.params));
            MERO::APIResponse response;
            Method method(&request, &response);
            if (!output) {
                method.DisableOutput();
            }
            method.RunByAPIRequest();
            EXPECT_EQ(method.steps_, std::string("request") + run.steps);
            const std::string data = output ? run.data : run.request_data_without_output;
            EXPECT_EQ(response.GetBody().asString(), data) << run.params << output;
            EXPECT_EQ(response.GetError(), data.empty() ? 0 : run.code) << run.params << output;
        }
    }
}

TEST(BaseAPI, RunsByJson) {
    for (const auto& run : kRuns) {
        for (const bool output : {true, false}) {
            Method method(test::JsonOf(run.params));
            if (!output) {
                method.DisableOutput();
            }
            EXPECT_EQ(method.RunByJson(), Output(run.code, run.data)) << run.params;
            EXPECT_EQ(method.steps_, std::string("json") + run.steps);
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
