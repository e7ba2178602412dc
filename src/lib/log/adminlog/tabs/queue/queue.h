#pragma once

#include "log/adminlog/toolkit/signatures.h"

/// The mails that wait to be delivered.
namespace serverlog::log::adminlog::queue {

/// All mails of the queue by "id". Throws Exception<ETag::SDK> when the web API fails.
InfoSignature QueueInfo;

/// Each mail of "queue_list", which holds IDs or objects with "id", that the queue had: sender,
/// recipient, date and time in this order with a blank between.
TranslateSignature TranslateQueueOperation;

}  // namespace serverlog::log::adminlog::queue
