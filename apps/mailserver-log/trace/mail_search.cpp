#include "trace/mail_search.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

#include "trace/any_of.h"

namespace serverlog::program {

namespace {

using merodbquery::Condition;

// For so long a mail may stay in the queue, and the collector remembers it.
constexpr std::int64_t kLifetime = 7 * 86400;

// Ids in one statement, or somewhat more. Far below what SQLite takes.
constexpr std::size_t kMostIds = 1000;

constexpr auto kAll = [](const record::MailLog& /*row*/) { return true; };

}  // namespace

FoundMails MailSearch::Find(const TraceTarget& target) {
    Add(target.MailIds(), kAll);
    if (target.MayBeQueueId()) {
        // A mail that went on under another queue id has no row with its first one.
        for (const std::string& host : joined_.Hosts()) {
            found_.AddQueueId({host, target.Text()});
        }
    }
    std::size_t known = 0;
    while (FollowJoined() || found_.CountOfMessageIds() > known) {
        known = found_.CountOfMessageIds();
        Add(found_.MailRows(), kAll);
    }
    return found_;
}

template <class IsWanted>
void MailSearch::Add(const Condition& rows, IsWanted is_wanted) {
    if (!rows.IsSet()) {
        return;
    }
    RowCursor<MailStore> cursor = store_.Find(rows && times_);
    while (store_.Next(cursor)) {
        if (is_wanted(cursor.Row())) {
            found_.Add(cursor.Row());
        }
    }
}

// Goes from queue ids that it did not look at before to what is joined to them; whether that is
// any.
bool MailSearch::FollowJoined() {
    std::set<std::string> ids;
    std::int64_t first = std::numeric_limits<std::int64_t>::max();
    std::int64_t last = 0;
    const std::set<QueueId> known = found_.QueueIds();
    for (const QueueId& queue_id : known) {
        if (ids.size() >= kMostIds || !followed_.insert(queue_id).second) {
            continue;
        }
        for (const auto& joined : joined_.Of(queue_id)) {
            found_.AddQueueId(joined.queue_id);
            ids.insert(joined.queue_id.id);
            first = std::min(first, joined.date - kLifetime);
            last = std::max(last, joined.date + kLifetime);
        }
    }
    if (ids.empty()) {
        return false;
    }
    const Condition in_time = Condition::ConditionFactory("date", ">=", first) &&
                              Condition::ConditionFactory("date", "<=", last);  // has an index
    Add(in_time && AnyOf("queue_id", ids), [this](const record::MailLog& row) {
        return found_.QueueIds().count({row.host, row.queue_id}) > 0;
    });
    return true;
}

}  // namespace serverlog::program
