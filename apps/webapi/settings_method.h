#pragma once

#include "routes.h"

namespace serverlog::endpoint {

/// The method's own parameters: those of the request without those that name the method.
Json::Value MethodParams(const MERO::APIRequest& request);

/// Has the method carried out by the handler of its API.
void RunSettingsMethod(Call& call);

}  // namespace serverlog::endpoint
