#include "trace/joined_queue_ids.h"

#include <soci/soci.h>

#include <filesystem>

#include "listing/read_guarded.h"
#include "mail_events/state_file.h"

namespace serverlog::program {

JoinedQueueIds::JoinedQueueIds() {
    if (std::filesystem::exists(state_file::kPath)) {
        state_ = merodbquery::Session::SQLite(state_file::kPath);
    }
}

std::vector<std::string> JoinedQueueIds::Hosts() {
    if (!state_) {
        return {};
    }
    return ReadGuarded(state_file::kPath, [this] {
        const soci::rowset<std::string> hosts =
            (state_->GetRawSession().prepare << "SELECT DISTINCT host FROM joined");
        return std::vector<std::string>(hosts.begin(), hosts.end());
    });
}

std::vector<JoinedQueueIds::Joined> JoinedQueueIds::Of(const QueueId& queue_id) {
    if (!state_) {
        return {};
    }
    return ReadGuarded(state_file::kPath, [&] {
        std::string other;
        long long date = 0;
        soci::statement rows =
            (state_->GetRawSession().prepare << "SELECT second_queue_id, date FROM joined"
                                                " WHERE host = :host AND first_queue_id = :id"
                                                " UNION ALL SELECT first_queue_id, date FROM joined"
                                                " WHERE host = :host AND second_queue_id = :id",
             soci::use(queue_id.host, "host"), soci::use(queue_id.id, "id"), soci::into(other),
             soci::into(date));
        rows.execute();
        std::vector<Joined> joined;
        while (rows.fetch()) {
            joined.push_back({{queue_id.host, other}, date});
        }
        return joined;
    });
}

}  // namespace serverlog::program
