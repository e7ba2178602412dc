#pragma once

#include "routes.h"

namespace serverlog::endpoint {

/// Tells all that the mail and the security log know about one mail, or about the mails of an
/// address: an object of "rows", an array of what program::TraceJson makes, by date, and "more",
/// which is true where rows were left out for the limit.
///
/// Parameters: "what", a queue id, message id or address; and optionally "time_from" and "time_to",
/// seconds since the epoch, the first included and the second not, and "limit", the most rows to
/// give (1 to 10,000; 1,000).
///
/// Throws ApiError with kBadRequest for one that can't be used, or an id of too many mails, and
/// program::Failure if the stores can't be read.
void GetTrace(Call& call);

}  // namespace serverlog::endpoint
