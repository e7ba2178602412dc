#pragma once

#include <mero/api_request.h>

#include <string>

namespace serverlog::endpoint {

/// The group of those who may use the endpoint.
inline constexpr char kAdministrators[] = "administrators";

/// Refuses a caller whom the web server has not authenticated, or who is not in kAdministrators
/// (NSS, the primary group counts too).
///
/// @param user  REMOTE_USER
///
/// Throws ApiError with kNoPermission.
void RequireAdministrator(const std::string& user);

/// Refuses a request that may have been made by a page of another site: one that changes something
/// has to be a POST with the caller's RequestToken in the header X-Mero-Token.
///
/// Throws ApiError with kNoPermission.
void RequireIntent(const MERO::APIRequest& request);

}  // namespace serverlog::endpoint
