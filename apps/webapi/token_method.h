#pragma once

#include "routes.h"

namespace serverlog::endpoint {

/// Tells the caller the RequestToken that changes take, as "token".
void GetToken(Call& call);

}  // namespace serverlog::endpoint
