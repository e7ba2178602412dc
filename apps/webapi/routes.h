#pragma once

#include <mero/api_request.h>
#include <mero/api_response.h>

#include <string>
#include <vector>

namespace serverlog::endpoint {

struct Route;

/// One call on its way: what was asked for, and the answer to fill in.
struct Call {
    const Route& route;
    MERO::APIRequest& request;
    MERO::APIResponse& response;
};

/// A method that the endpoint offers. It has one version.
struct Route {
    std::string api;
    std::string method;
    /// Key in the table of operations, under which the call is logged; empty for one that is not.
    std::string operation;
    bool changes;          ///< changes the state of the mail server
    bool writes_document;  ///< writes its reply to standard output by itself
    void (*run)(Call&);    ///< carries the call out
};

/// The version that all methods have.
inline constexpr int kVersion = 1;

/// All methods, each once: those that this program carries out by itself, and those that it has
/// carried out by the handlers of the settings pages.
std::vector<Route> MakeRoutes();

/// The route that a request names by "api", "method" and "version".
///
/// Throws ApiError with kNoSuchApi, kNoSuchMethod or kNoSuchVersion, in this order of asking.
const Route& FindRoute(const std::vector<Route>& routes, const MERO::APIRequest& request);

}  // namespace serverlog::endpoint
