#pragma once

#include <string>
#include <tuple>

namespace serverlog::program {

/// A queue id, which means something on its host only.
struct QueueId {
    std::string host;
    std::string id;

    bool operator<(const QueueId& other) const {
        return std::tie(host, id) < std::tie(other.host, other.id);
    }
};

}  // namespace serverlog::program
