#pragma once

#include <json/value.h>

#include <functional>
#include <string>

namespace MERO {

/// Runs methods of the web API from within a process.
///
/// An API is carried out by the handler that was registered in this process under its name, else
/// by the executable of that name in the handlers' folder. Safe to use from several threads.
class APIRunner {
 public:
    /// Folder of the executables, one file an API.
    static constexpr char kHandlerFolder[] = "/var/packages/PostCube-Server/target/webapi";
    /// Longest time that an executable may take, in seconds.
    static constexpr int kTimeLimitSeconds = 10;
    /// Longest response of an executable, in bytes.
    static constexpr unsigned kOutputLimit = 16U << 20;

    /// Codes of the failures that Exec itself reports as "error"/"code".
    enum Error : int {
        kNoSuchAPI = 1,      ///< nothing carries out the API, or its name is not allowed
        kHandlerFailed = 2,  ///< the handler failed, or its output is no response object
        kTimedOut = 3,       ///< the executable took too long and was killed
    };

    /// A handler of this process: given method, version, parameters and user, it returns the whole
    /// response object. What it throws is reported as kHandlerFailed.
    using Handler = std::function<Json::Value(const std::string& method, int version,
                                              const Json::Value& params, const std::string& user)>;

    /// Lets `handler` carry out the API `api` in this process from now on, in place of any earlier
    /// one and of the executable.
    static void Register(const std::string& api, Handler handler);

    /// Takes the handler of `api` away again; none is no failure. A call under way goes on.
    static void Unregister(const std::string& api);

    /// Runs one method and waits for its end.
    ///
    /// An executable gets METHOD, VERSION and USER as arguments, the parameters as JSON on standard
    /// input and writes the response object as JSON to standard output. It runs in the folder "/"
    /// in a process group of its own, with the caller's effective identity as its real one too (a
    /// shell would drop one that differs), PATH and LANG as its whole environment and no open file
    /// but the three standard ones; its standard error is the caller's. It must end with
    /// status 0 within kTimeLimitSeconds, with at most kOutputLimit bytes written; otherwise its
    /// process group is killed and the call has failed.
    ///
    /// @param response  becomes the response object: "success" and, on success, "data". On failure
    ///                  "error" holds "code": the API's own or one of Error. Each of Error's is
    ///                  also written to the mail log.
    /// @param api       name of the API; names that are empty or hold "/" or ".." are refused
    /// @param version   version of the API
    /// @param method    name of the method
    /// @param params    parameters
    /// @param user      login name in whose name the call is made
    static void Exec(Json::Value& response, const char* api, int version, const char* method,
                     const Json::Value& params, const char* user);
};

}  // namespace MERO
