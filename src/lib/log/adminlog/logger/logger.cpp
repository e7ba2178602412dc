#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/exception/exception.h>
#include <mailserver-log/log/adminlog/logger/line.h>
#include <mailserver-log/log/adminlog/logger/logger.h>
#include <mailserver-log/utils/error_line.h>

#include "log/adminlog/logger/escape_json_text.h"
#include "utils/json_text.h"
#include "utils/strings.h"

#include <mero/api_request.h>
#include <mero/api_response.h>
#include <mero/mail_node_cluster.h>

#include <syslog.h>

#include <ctime>
#include <utility>

namespace serverlog::log::adminlog {

namespace {

constexpr char kStorePath[] = "/var/spool/@PostCube-Server/aggr_log/admin_log.db";

/// A text member's value, from a text that is already escaped.
std::string Quoted(std::string const& escaped) {
    return '"' + escaped + '"';
}

/// One member of the line with the comma before it.
std::string Member(std::string_view name, std::string const& value) {
    return ",\"" + std::string(name) + "\":" + value;
}

/// Has the store exist before any line is written, so that the collector always finds one.
void CreateStoreIfMissing() {
    db::Provider provider(kStorePath);
    provider.Get<db::AdminLogDB>(false);
}

std::string FillPlaceholders(std::string statement, std::vector<std::string> const& values) {
    // One after the other on the text as it grows: a value that holds a later placeholder has it
    // replaced in its turn.
    for (std::size_t i = 0; i < values.size(); ++i) {
        statement = utils::Replace(statement, "%" + std::to_string(i) + "%",
                                   "[" + EscapeJsonText(values[i]) + "]");
    }
    return statement;
}

void WriteLine(std::string text, std::string const& fragment, std::string const& tail) {
    text += fragment;
    text += tail;
    syslog(line::kPriority, "%s", text.c_str());
}

}  // namespace

Logger::Logger(std::string name, Json::Value params)
    : name_(std::move(name)), params_(std::move(params)), config_(GetConfig(name_)) {}

void Logger::PreLog() {
    if (config_.tabs.empty() || !config_.info) {
        return;
    }
    auto const report = [this] { SERVERLOG_ERROR_LINE("Get old info fail: %s", name_.c_str()); };
    try {
        old_info_ = config_.info(params_);
    } catch (Exception<ETag::Log> const&) {
        report();
    } catch (Exception<ETag::SDK> const&) {
        report();
    }
}

void Logger::Log(MERO::APIRequest* request, MERO::APIResponse* response) {
    if (request == nullptr || response == nullptr) {
        SERVERLOG_ERROR_LINE("empty req! abort logging");
        return;
    }
    bool const forced = IsForced();
    if (config_.tabs.empty() || (response->GetError() != 0 && !forced)) {
        return;
    }
    CreateStoreIfMissing();

    std::time_t const now = std::time(nullptr);
    Json::Value const diff = config_.diff ? config_.diff(old_info_, params_) : Json::Value();
    std::string const tail = ComposeTail(*request, now);
    for (TabLog const& tab : config_.tabs) {
        std::string const head =
            std::string(line::kHead) + Member(line::kTabType, std::to_string(tab.tab_type));
        for (std::string const& statement : tab.statements) {
            for (std::string const& fragment :
                 ComposeStatement(statement, diff, response->GetBody())) {
                WriteLine(head, fragment, tail);
            }
        }
    }
}

std::vector<std::string> Logger::ComposeStatement(std::string const& statement,
                                                  Json::Value const& diff,
                                                  Json::Value const& body) {
    if (!config_.translate) {
        return {Member(line::kStatement, Quoted(statement))};
    }
    std::vector<std::vector<std::string>> rows;
    try {
        rows = config_.translate(statement, old_info_, params_, diff, body);
    } catch (...) {
        SERVERLOG_ERROR_LINE("Log webapi operation[%s] error!", name_.c_str());
    }
    std::vector<std::string> fragments;
    fragments.reserve(rows.size());
    for (std::vector<std::string> const& values : rows) {
        fragments.push_back(Member(line::kStatement, Quoted(FillPlaceholders(statement, values))));
    }
    return fragments;
}

bool Logger::IsForced() const {
    return old_info_.isMember("force_log") && old_info_["force_log"].asBool();
}

std::string Logger::ComposeTail(MERO::APIRequest& request, std::time_t time) const {
    std::string const params = EscapeJsonText(utils::ToJsonText(params_));
    std::string const host = MERO::POSTCUBE_SERVER::MEROMailNodeCluster().getHostIP();
    std::string tail = Member(line::kUser, Quoted(EscapeJsonText(request.GetLoginUserName())));
    tail += Member(line::kUid, std::to_string(request.GetLoginUID()));
    tail += Member(line::kExecTime, std::to_string(time));
    tail += Member(line::kIp, Quoted(request.GetRemoteIP()));
    tail += Member(line::kServer, Quoted("(" + host + ")"));
    tail += Member(line::kWebapiParam, Quoted(params));
    tail += line::kTail;
    return tail;
}

}  // namespace serverlog::log::adminlog
