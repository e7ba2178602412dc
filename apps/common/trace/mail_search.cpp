#include "trace/mail_search.h"

#include <cstdint>
#include <map>

#include "trace/any_of.h"

namespace serverlog::program {

namespace {

using merodbquery::Condition;

// For so long a mail may stay in the queue, and the collector remembers it.
constexpr std::int64_t kLifetime = 7L * 86400;

// Ids in one statement, or somewhat more. Far below what SQLite takes.
constexpr std::size_t kMostIds = 1000;

constexpr auto kAll = [](const record::MailLog& /*row*/) { return true; };

}  // namespace

FoundMails MailSearch::Find(const TraceTarget& target) {
    Add(target.MailIds(), kAll);
    if (target.MayBeQueueId()) {
        AddFirstId(target.Text());
    }
    std::size_t known = 0;
    while (FollowJoined() || found_.CountOfMessageIds() > known) {
        known = found_.CountOfMessageIds();
        Add(found_.MailRows(), kAll);
    }
    return found_;
}

// A mail that went on under another queue id has no row with its first one.
void MailSearch::AddFirstId(const std::string& queue_id) {
    for (const std::string& host : joined_.Hosts()) {
        for (const auto& joined : joined_.Of({host, queue_id})) {
            found_.AddQueueId({host, queue_id}, joined.date);
        }
    }
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
    DateSpan span;
    const std::map<QueueId, DateSpan> known = found_.QueueIds();
    for (const auto& [queue_id, had_at] : known) {
        if (ids.size() >= kMostIds || !followed_.insert(queue_id).second) {
            continue;
        }
        for (const auto& joined : joined_.Of(queue_id)) {
            if (had_at.IsNear(joined.date, kLifetime, kLifetime)) {
                found_.AddQueueId(joined.queue_id, joined.date);
                ids.insert(joined.queue_id.id);
                span.Include(joined.date);
            }
        }
    }
    if (ids.empty()) {
        return false;
    }
    const Condition in_time =  // the dates have an index
        Condition::ConditionFactory("date", ">=", span.first - kLifetime) &&
        Condition::ConditionFactory("date", "<=", span.last + kLifetime);
    Add(in_time && AnyOf("queue_id", ids), [this](const record::MailLog& row) {
        const auto found = found_.QueueIds().find({row.host, row.queue_id});
        return found != found_.QueueIds().end() &&
               found->second.IsNear(row.date, kLifetime, kLifetime);
    });
    return true;
}

}  // namespace serverlog::program
