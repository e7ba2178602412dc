#include <mailserver-log/webapi/adminlog/export_v1.h>
#include <mailserver-log/webapi/adminlog/list_user_v1.h>
#include <mailserver-log/webapi/adminlog/list_v1.h>
#include <mailserver-log/webapi/api_runner.h>
#include <mailserver-log/webapi/emaillog/export.h>
#include <mailserver-log/webapi/emaillog/list.h>
#include <mailserver-log/webapi/securitylog/export.h>
#include <mailserver-log/webapi/securitylog/list.h>
#include <mero/api_request.h>
#include <mero/api_response.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "input/input.h"
#include "output/json_writer.h"
#include "output/reply.h"
#include "output/standard_output.h"
#include "process/failure.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

/// What a method of the JSON form gave.
struct Result {
    int code;
    std::string data;    ///< as JSON text
    Json::Value reason;  ///< of a failure
};

struct QueryOptions {
    std::string method;
    std::string params_path;
    bool request_form = false;
    std::string titles_path;
    std::string texts_path;
};

/// What SetTestString gives a method.
struct TestStrings {
    Json::Value titles;
    Json::Value texts;
};

using webapi::adminlog::Export_v1;
using webapi::adminlog::List_v1;

void SetTestString(List_v1& method, const TestStrings& strings) {
    method.SetTestString(strings.titles);
}

void SetTestString(Export_v1& method, const TestStrings& strings) {
    method.SetTestString(strings.titles, strings.texts);
}

template <class T>
constexpr bool kTakesTitles = std::is_base_of_v<List_v1, T>;

template <class T>
constexpr bool kIsList = std::is_same_v<T, List_v1> || std::is_same_v<T, webapi::emaillog::List> ||
                         std::is_same_v<T, webapi::securitylog::List>;

template <class T>
Result RunMethod(T& method) {
    std::string text;
    std::tuple<int, Json::Value> result;
    if constexpr (kIsList<T>) {
        result = webapi::RunPreparedAsText(method, text);
    } else {
        result = webapi::RunPrepared(method);
    }
    const auto& [code, data] = result;
    return {code, text.empty() ? CompactJson(data) : text,
            data.isObject() ? data["reason"] : Json::Value()};
}

template <class T>
Result RunJson(const Json::Value& params, const std::optional<TestStrings>& strings) {
    T method(params);
    if constexpr (kTakesTitles<T>) {
        if (strings) {
            SetTestString(method, *strings);
        }
    }
    return RunMethod(method);
}

template <class T>
void RunRequest(MERO::APIRequest& request, MERO::APIResponse& response,
                const std::optional<TestStrings>& strings) {
    if constexpr (kTakesTitles<T>) {
        if (strings) {
            T method(&request, &response);
            SetTestString(method, *strings);
            webapi::RunPrepared(method, &response);
            return;
        }
    }
    webapi::RunAPIMethod<T>(&request, &response);
}

struct Method {
    const char* name;
    bool writes_document;  ///< writes to standard output by itself
    bool takes_titles;
    bool takes_texts;
    Result (*run_json)(const Json::Value&, const std::optional<TestStrings>&);
    void (*run_request)(MERO::APIRequest&, MERO::APIResponse&, const std::optional<TestStrings>&);
};

template <class T>
constexpr Method MakeMethod(const char* name, bool writes_document) {
    return {name,       writes_document, kTakesTitles<T>, std::is_same_v<T, Export_v1>,
            RunJson<T>, RunRequest<T>};
}

constexpr Method kMethods[] = {
    MakeMethod<List_v1>("admin.list", false),
    MakeMethod<webapi::adminlog::ListUser_v1>("admin.users", false),
    MakeMethod<Export_v1>("admin.export", true),
    MakeMethod<webapi::emaillog::List>("mail.list", false),
    MakeMethod<webapi::emaillog::Export>("mail.export", true),
    MakeMethod<webapi::securitylog::List>("security.list", false),
    MakeMethod<webapi::securitylog::Export>("security.export", true),
};

std::vector<std::string> MethodNames() {
    std::vector<std::string> names;
    for (const Method& method : kMethods) {
        names.emplace_back(method.name);
    }
    return names;
}

const Method& FindMethod(const std::string& name) {
    return *std::find_if(std::begin(kMethods), std::end(kMethods),
                         [&name](const Method& method) { return name == method.name; });
}

// "-" on a terminal does not wait for somebody to type an object.
Json::Value ReadParams(const std::string& path) {
    const bool nothing_given = path.empty() || (path == "-" && isatty(STDIN_FILENO) != 0);
    return nothing_given ? Json::Value(Json::objectValue) : ReadObject(path, "the parameters");
}

Json::Value ReadStrings(const std::string& path, const char* option, const Method& method,
                        bool takes_them) {
    if (path.empty()) {
        return Json::Value();
    }
    if (!takes_them) {
        std::cerr << "mailserver-log: " << method.name << " does not use " << option << std::endl;
    }
    return ReadObject(path, option);
}

std::optional<TestStrings> ReadTestStrings(const QueryOptions& options, const Method& method) {
    TestStrings strings;
    strings.titles = ReadStrings(options.titles_path, "--titles", method, method.takes_titles);
    strings.texts = ReadStrings(options.texts_path, "--texts", method, method.takes_texts);
    if (options.titles_path.empty() && options.texts_path.empty()) {
        return std::nullopt;
    }
    return strings;
}

// A document is written with C's stdout.
void CheckDocument() {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) {
        return;
    }
    if (ReaderHasGone()) {
        throw ReaderGone();
    }
    throw Failure("cannot write the document to standard output; is the disk full?");
}

[[noreturn]] void Fail(const Method& method, int code, const Json::Value& reason) {
    throw Failure(std::string(method.name) + " failed with code " + std::to_string(code) +
                  (reason.isString() ? ": " + reason.asString() : "") + "; the mail log tells why");
}

void QueryByJson(const Method& method, const Json::Value& params,
                 const std::optional<TestStrings>& strings) {
    const Result result = method.run_json(params, strings);
    if (method.writes_document) {
        CheckDocument();
    } else {
        std::cout << "{\"code\":" << result.code << ",\"data\":" << result.data << "}\n";
    }
    if (result.code != 0) {
        Fail(method, result.code, result.reason);
    }
}

void QueryByRequest(const Method& method, const Json::Value& params,
                    const std::optional<TestStrings>& strings) {
    MERO::APIRequest request("admin", 1024, "127.0.0.1", params);
    MERO::APIResponse response;
    method.run_request(request, response, strings);
    if (method.writes_document) {
        CheckDocument();
    }
    if (response.IsOutputEnabled()) {
        WriteReply(std::cout, response.Reply());
    }
    if (response.GetError() != 0) {
        Fail(method, response.GetError(), Json::Value());
    }
}

void RunQuery(const QueryOptions& options) {
    const Method& method = FindMethod(options.method);
    const Json::Value params = ReadParams(options.params_path);
    const std::optional<TestStrings> strings = ReadTestStrings(options, method);
    IgnoreBrokenPipe();
    if (options.request_form) {
        QueryByRequest(method, params, strings);
    } else {
        QueryByJson(method, params, strings);
    }
}

}  // namespace

void AddQuery(CLI::App& program) {
    const auto options = std::make_shared<QueryOptions>();
    CLI::App* query =
        program.add_subcommand("query", "Run one of the methods that list and export the logs");
    query->footer(
        "METHOD is admin.list, admin.users, admin.export, mail.list, mail.export, security.list "
        "or security.export. A list is printed as {\"code\":N,\"data\":...}, an export as its "
        "document with the HTTP headers in front. A code that is not 0 ends it with status 1.");
    query->add_option("METHOD", options->method, "Method to run")
        ->required()
        ->check(CLI::IsMember(MethodNames()));
    query->add_option("FILE", options->params_path,
                      "File with the parameters, a JSON object; - is standard input [{}]");
    query->add_flag("--request", options->request_form,
                    "Run it as a web request, and print the reply that the web client gets");
    query
        ->add_option("--titles", options->titles_path,
                     "Titles for admin.list and admin.export, an object from tab numbers to texts")
        ->type_name("FILE");
    query
        ->add_option(
            "--texts", options->texts_path,
            "Labels for admin.export, an object of sections of keys with their texts. With "
            "--request the product's own count more, where they are installed")
        ->type_name("FILE");
    query->callback([options] { RunQuery(*options); });
}

}  // namespace serverlog::program
