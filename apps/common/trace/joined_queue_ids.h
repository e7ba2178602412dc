#pragma once

#include <merodbquery/session.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "trace/queue_id.h"

namespace serverlog::program {

/// Which queue ids belong together, as the collector of mail events remembers it for some days: of
/// a mail before and behind a content filter, and of a mail and the notification that it caused.
class JoinedQueueIds {
 public:
    struct Joined {
        QueueId queue_id;
        std::int64_t date;  ///< when the two were joined
    };

    /// Knows nothing where no mail events were collected.
    JoinedQueueIds();

    /// The hosts of all ids. Throws Failure if the collector's state can't be read.
    std::vector<std::string> Hosts();

    /// The ids that are joined to this one. Throws Failure if the collector's state can't be read.
    std::vector<Joined> Of(const QueueId& queue_id);

 private:
    std::optional<merodbquery::Session> state_;
};

}  // namespace serverlog::program
