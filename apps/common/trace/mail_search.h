#pragma once

#include <merodbquery/condition.h>

#include <set>
#include <string>

#include "stores/stores.h"
#include "trace/found_mails.h"
#include "trace/joined_queue_ids.h"
#include "trace/trace_store.h"
#include "trace/trace_target.h"

namespace serverlog::program {

/// Finds the mails of an id: from a queue id to the message ids of its rows, from these to all rows
/// that have them, and from the queue ids of these to those that are joined to them, until nothing
/// new is found.
class MailSearch {
 public:
    /// @param store  must outlive this object
    /// @param times  what else the rows have to fulfil
    MailSearch(TraceStore<MailStore>& store, const merodbquery::Condition& times)
        : store_(store), times_(times) {}

    /// Throws Failure if a file can't be read, TooManyMails if there are too many.
    FoundMails Find(const TraceTarget& target);

 private:
    template <class IsWanted>
    void Add(const merodbquery::Condition& rows, IsWanted is_wanted);
    void AddFirstId(const std::string& queue_id);
    bool FollowJoined();

    TraceStore<MailStore>& store_;
    merodbquery::Condition times_;
    JoinedQueueIds joined_;
    FoundMails found_;
    std::set<QueueId> followed_;
};

}  // namespace serverlog::program
