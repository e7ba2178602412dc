#include "support/operation_fixture.h"

#include "support/json_value.h"
#include "support/text_file.h"
#include "support/time_zone.h"

#include <mailserver-log/log/adminlog/logger/line.h>
#include <mailserver-log/log/adminlog/logger/logger.h>

#include <mailserver/mail_conf.h>
#include <mero/api_request.h>
#include <mero/api_response.h>
#include <mero/api_runner.h>

#include <syslog.h>

#include <filesystem>
#include <set>

namespace test {

namespace {

namespace line = serverlog::log::adminlog::line;

constexpr char kTextFolder[] = "/var/packages/PostCube-Server/target/app/texts/enu";
constexpr char kDomains[] = "/var/packages/PostCube-Server/etc/domains.json";
constexpr char kSystemTextFolder[] = "/usr/mero/meroman/webman/texts/enu";

/// Answers the APIs of the replies in this process for as long as it lives.
class Handlers {
 public:
    Handlers(std::map<std::string, Json::Value> const& replies, std::vector<std::string>& calls) {
        for (auto const& reply : replies) {
            apis_.insert(reply.first.substr(0, reply.first.find(' ')));
        }
        for (std::string const& api : apis_) {
            MERO::APIRunner::Register(
                api, [api, &replies, &calls](std::string const& method, int version,
                                             Json::Value const& params, std::string const& user) {
                    calls.push_back(api + " " + method + " " + std::to_string(version) + " " +
                                    user + " " + TextOf(params));
                    auto const found = replies.find(api + " " + method);
                    Json::Value response;
                    response["success"] = found != replies.end();
                    if (found != replies.end()) {
                        response["data"] = found->second;
                    }
                    return response;
                });
        }
    }
    ~Handlers() {
        for (std::string const& api : apis_) {
            MERO::APIRunner::Unregister(api);
        }
    }
    Handlers(Handlers const&) = delete;
    Handlers& operator=(Handlers const&) = delete;

 private:
    std::set<std::string> apis_;
};

void Link(std::string const& folder, char const* place) {
    if (!std::filesystem::is_symlink(place)) {
        std::filesystem::create_directory_symlink(PROJECT_SOURCE_DIRECTORY "/texts/" + folder,
                                                  place);
    }
}

std::string WithoutPlace(std::string const& error) {
    return error.substr(error.find(' ') + 1);
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, Statement const& statement) {
    return stream << statement.tab << " " << statement.text;
}

OperationTest::OperationTest() {
    Link("enu", kTextFolder);
    Link("platform/enu", kSystemTextFolder);
    WriteTextFile(kDomains, R"({"domains":[{"domain_id":1,"name":"example.com"}]})");
    mailConfSet("cluster_host_ip", "192.0.2.1", false, 0);
    mailConfSet("cluster_host_interface", "eth0", false, 0);
    SetZone("UTC");
}

OperationResult OperationTest::Run(OperationCall const& call) {
    OperationResult result;
    syslog_.Take();
    {
        Handlers const handlers(call.replies, result.api_calls);
        MERO::APIRequest request("admin", 1024, "198.51.100.7", call.params);
        MERO::APIResponse response;
        response.SetError(call.error, call.body);
        serverlog::log::adminlog::Logger logger(call.operation, call.params);
        logger.PreLog();
        logger.Log(&request, &response);
    }
    for (SyslogSocket::Line const& received : syslog_.Take()) {
        if (received.priority == line::kPriority) {
            Json::Value const members = JsonOf(received.text);
            result.lines.push_back(received.text);
            result.statements.push_back({members[line::kTabType.data()].asInt(),
                                         members[line::kStatement.data()].asString()});
            result.params = JsonOf(members[line::kWebapiParam.data()].asString());
        } else if (received.priority == (LOG_MAIL | LOG_ERR)) {
            result.errors.push_back(WithoutPlace(received.text));
        }
    }
    return result;
}

}  // namespace test
