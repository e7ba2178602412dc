#pragma once

#include <merodbquery/condition.h>

#include "stores/stores.h"
#include "trace/found_mails.h"
#include "trace/mail_search.h"
#include "trace/trace_store.h"
#include "trace/trace_target.h"

namespace serverlog::program {

/// Finds all rows of the mail and of the security store that tell of one target, in one picture of
/// both.
class Tracer {
 public:
    /// Looks for the mails of the target.
    ///
    /// @param times  what else the rows have to fulfil
    ///
    /// Throws Failure if a file can't be read, TooManyMails if the target is the id of too many.
    Tracer(TraceTarget target, const merodbquery::Condition& times);

    /// Calls `visit(row)` with each row, a record::MailLog or a record::SecurityLog, as long as
    /// that returns true: by date; of one date those of the security store first, since what they
    /// tell of happens on a mail's way in.
    ///
    /// @return whether there was any row
    ///
    /// Throws Failure if they can't be read to the end, and what `visit` throws.
    template <class Visit>
    bool ForEach(Visit visit) {
        const merodbquery::Condition events = target_.SecurityAddresses() || found_.SecurityRows();
        // A mail that was refused is known from events alone. They have no index; a search for a
        // queue id takes its time anyway, any other looks there last.
        return target_.MayBeQueueId()
                   ? VisitByDate(events || target_.Events(), visit)
                   : VisitByDate(events, visit) || VisitByDate(target_.Events(), visit);
    }

 private:
    template <class Visit>
    bool VisitByDate(const merodbquery::Condition& events_wanted, Visit& visit) {
        RowCursor<MailStore> mails =
            mail_store_.FindByDate((target_.MailAddresses() || found_.MailRows()) && times_);
        RowCursor<SecurityStore> events = security_store_.FindByDate(events_wanted && times_);
        bool has_mail = TraceStore<MailStore>::Next(mails);
        bool has_event = NextWanted(events);
        const bool has_any = has_mail || has_event;
        while (has_mail || has_event) {
            const bool is_event = has_event && (!has_mail || events.Row().date <= mails.Row().date);
            if (!(is_event ? visit(events.Row()) : visit(mails.Row()))) {
                break;
            }
            if (is_event) {
                has_event = NextWanted(events);
            } else {
                has_mail = TraceStore<MailStore>::Next(mails);
            }
        }
        return has_any;
    }

    bool NextWanted(RowCursor<SecurityStore>& events) const;
    bool IsWanted(const record::SecurityLog& event) const;

    TraceTarget target_;
    merodbquery::Condition times_;
    TraceStore<MailStore> mail_store_;
    TraceStore<SecurityStore> security_store_;
    FoundMails found_;
};

}  // namespace serverlog::program
