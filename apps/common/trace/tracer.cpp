#include "trace/tracer.h"

#include <utility>

namespace serverlog::program {

Tracer::Tracer(TraceTarget target, const merodbquery::Condition& times)
    : target_(std::move(target)),
      times_(times),
      found_(MailSearch(mail_store_, times_).Find(target_)) {}

bool Tracer::NextWanted(RowCursor<SecurityStore>& events) const {
    while (TraceStore<SecurityStore>::Next(events)) {
        if (IsWanted(events.Row())) {
            return true;
        }
    }
    return false;
}

bool Tracer::IsWanted(const record::SecurityLog& event) const {
    return target_.IsAddress(event.sender) || target_.IsAddress(event.recipient) ||
           found_.Concerns(event) || target_.IsNamedIn(event.event);
}

}  // namespace serverlog::program
