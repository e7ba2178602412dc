#include <fcntl.h>
#include <gmock/gmock.h>
#include <json/json.h>
#include <mero/api_runner.h>
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <syslog.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <thread>

#include "support/child.h"
#include "support/json_value.h"
#include "support/syslog_socket.h"
#include "support/table.h"
#include "support/text_file.h"

namespace {

using MERO::APIRunner;
using test::JsonOf;
using testing::HasSubstr;

constexpr char kApi[] = "MERO.Test";
constexpr char kSuccess[] = "echo '{\"success\":true,\"data\":7}'\n";

void Install(const std::string& script) {
    test::WriteTextFile(std::string(APIRunner::kHandlerFolder) + "/" + kApi, "#!/bin/sh\n" + script,
                        0755);
}

Json::Value Call(const char* api = kApi, const Json::Value& params = Json::objectValue) {
    Json::Value response = "old";
    APIRunner::Exec(response, api, 3, "get", params, "admin");
    return response;
}

Json::Value Failure(int code) {
    return JsonOf(R"({"success":false,"error":{"code":)" + std::to_string(code) + "}}");
}

TEST(APIRunner, HandlerOfTheProcessComesFirst) {
    Install(kSuccess);
    APIRunner::Register(kApi, [](const std::string& method, int version, const Json::Value& params,
                                 const std::string& user) {
        Json::Value response;
        response["success"] = true;
        response["data"] = method + std::to_string(version) + params["a"].asString() + user;
        return response;
    });
    EXPECT_EQ(Call(kApi, JsonOf(R"({"a":"b"})"))["data"], "get3badmin");

    APIRunner::Register(kApi, [](auto&&...) -> Json::Value { throw std::runtime_error("no"); });
    EXPECT_EQ(Call(), Failure(APIRunner::kHandlerFailed));
    APIRunner::Register(kApi, [](auto&&...) { return Json::Value("text"); });
    EXPECT_EQ(Call(), Failure(APIRunner::kHandlerFailed));

    APIRunner::Unregister(kApi);
    EXPECT_EQ(Call()["data"], 7);
}

TEST(APIRunner, ExecutableGetsTheCallAndNothingElse) {
    const int inherited = fcntl(STDIN_FILENO, F_DUPFD, 50);
    setenv("LD_PRELOAD_NOT_REALLY", "x", 1);
    Install(R"sh(
        printf '{"success":true,"data":{"arguments":"%s","input":%s,"again":%s,' \
            "$*" "$(cat)" "$(cat /dev/stdin)"
        printf '"variables":"%s","folder":"%s","file":"%s"}}' \
            "$(tr '\0' '\n' </proc/self/environ | grep -cv '^PATH=\|^LANG=\|^PWD=')" "$PWD" \
            "$(ls /proc/$$/fd | grep -c 50)"
    )sh");
    const Json::Value params = JsonOf(R"({"name":"q\"ü' $HOME","list":[1,null]})");
    const Json::Value data = Call(kApi, params)["data"];
    EXPECT_EQ(data["arguments"], "get 3 admin");
    EXPECT_EQ(data["input"], params);
    EXPECT_EQ(data["again"], params);
    EXPECT_EQ(data["variables"], "0");
    EXPECT_EQ(data["folder"], "/");
    EXPECT_EQ(data["file"], "0");
    close(inherited);
}

TEST(APIRunner, OwnFailureOfTheAPIIsPassedOn) {
    const std::string own = R"({"success":false,"error":{"code":408,"errors":{"line":1}}})";
    Install("echo '" + own + "'");
    EXPECT_EQ(Call(), JsonOf(own));
}

TEST(APIRunner, FailingExecutables) {
    test::SyslogSocket log;
    const std::string deep = "head -c 5000 /dev/zero | tr '\\0' '['\n";
    const test::Table<const char*, std::string, const char*> rows = {
        {"status", std::string(kSuccess) + "exit 3", "ended with status 3"},
        {"killed", std::string(kSuccess) + "kill -9 $$", "killed by signal 9"},
        {"nothing", "", "wrote no response object"},
        {"no JSON", "echo hello", "wrote no response object"},
        {"no object", "echo '[true]'", "wrote no response object"},
        {"no success", "echo '{\"data\":1}'", "wrote no response object"},
        {"success of another type", "echo '{\"success\":1}'", "wrote no response object"},
        {"more behind it", std::string(kSuccess) + "echo x", "wrote no response object"},
        {"nested too deep", deep, "wrote no response object"},
        {"closes its output", "exec >&-\n", "wrote no response object"},
        {"floods", "exec cat /dev/zero", "wrote more than 16777216 bytes"},
    };
    Call("missing");  // connects to the system log, which stays open
    log.Take();
    const std::size_t open_files = test::FilesIn("/proc/self/fd").size();
    // Too large for a pipe: a handler that reads none of it must not block the call.
    const Json::Value large = std::string(1 << 20, 'x');
    for (const auto& [name, script, line] : rows) {
        Install(script);
        EXPECT_EQ(Call(kApi, large), Failure(APIRunner::kHandlerFailed)) << name;
        EXPECT_THAT(log.TakeTexts(LOG_MAIL | LOG_WARNING), testing::ElementsAre(HasSubstr(line)))
            << name;
    }
    test::WriteTextFile(std::string(APIRunner::kHandlerFolder) + "/" + kApi, "no program", 0755);
    EXPECT_EQ(Call(), Failure(APIRunner::kHandlerFailed));
    EXPECT_EQ(test::FilesIn("/proc/self/fd").size(), open_files);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
}

TEST(APIRunner, NamesThatAreNoAPI) {
    const std::string folder = APIRunner::kHandlerFolder;
    test::WriteTextFile(folder + "/plain", "#!/bin/sh\n", 0644);
    std::filesystem::create_directories(folder + "/folder");
    for (const char* name : {"", ".", "..", "../webapi/MERO.Test", "folder/../MERO.Test", "missing",
                             "folder", "plain", "/bin/true"}) {
        EXPECT_EQ(Call(name), Failure(APIRunner::kNoSuchAPI)) << name;
    }
}

TEST(APIRunner, ExecutableThatTakesTooLongIsKilledWithItsChildren) {
    Install("trap '' TERM\nsleep 1000 &\necho $! >/tmp/grandchild\n" + std::string(kSuccess) +
            "sleep 1000");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Call(), Failure(APIRunner::kTimedOut));
    const auto taken = std::chrono::steady_clock::now() - start;
    EXPECT_GE(taken, std::chrono::seconds(APIRunner::kTimeLimitSeconds));
    EXPECT_LT(taken, std::chrono::seconds(2 * APIRunner::kTimeLimitSeconds));
    // Gone, or dead and waiting for the sandbox's first process; the kernel may take its time.
    const int grandchild = JsonOf(test::ReadTextFile("/tmp/grandchild")).asInt();
    while (!std::strchr("?Z", test::StateOf(grandchild))) {
        sched_yield();
    }
}

TEST(APIRunner, DoesNotWaitForWhatTheExecutableLeavesRunning) {
    Install("sleep 5 &\n" + std::string(kSuccess));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Call()["data"], 7);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(APIRunner, OddCallers) {
    Install("cat\n");
    const auto run = [] { return Call(kApi, JsonOf(R"({"success":true})"))["success"].asString(); };
    EXPECT_EQ(test::InChild([&] {
                  close(STDIN_FILENO);
                  close(STDOUT_FILENO);
                  return run();
              }),
              "true");
    EXPECT_EQ(test::InChild([&] {
                  signal(SIGCHLD, SIG_IGN);
                  return run();
              }),
              "true");
    Install(R"(echo "{\"success\":true,\"data\":\"$(id -ru) $(id -rg)\"}")");
    SKIP_WITHOUT_SECOND_USER();
    EXPECT_EQ(test::InChild([] {
                  test::SetIds({test::kOtherUser, 0, 0}, {test::kOtherUser, 0, 0});
                  return Call()["data"].asString();
              }),
              "0 0");
}

TEST(APIRunner, ThreadsAtOnce) {
    Install("cat\n");
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread] {
            for (int round = 0; round < 5; ++round) {
                Json::Value params;
                params["success"] = true;
                params["data"] = thread;
                EXPECT_EQ(Call(kApi, params), params);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

}  // namespace
