#include "collect/collector.h"

#include <utility>

#include "collect/admin_log_line.h"
#include "collect/last_resort.h"
#include "output/display_text.h"
#include "process/failure.h"
#include "stores/stores.h"

namespace serverlog::program {

namespace {

constexpr std::size_t kMostRecords = 1000;
constexpr std::size_t kMostBytes = std::size_t{16} << 20;
// Of a rejected line on standard error, in bytes; the log of rejected lines has the whole.
constexpr std::size_t kShownLength = 200;

}  // namespace

Collector::Collector(MessageSource& source, AdminLogStore& store, const RejectedLog& rejected_log,
                     Retry& retry, std::ostream& talk)
    : source_(source), store_(store), rejected_log_(rejected_log), retry_(retry), talk_(talk) {}

void Collector::Run() {
    try {
        Loop();
    } catch (const Failure&) {
        if (!source_.ComesAgain() && HasPending()) {
            Store();
        }
        throw;
    }
}

std::string Collector::Summary() const {
    return "collected " + std::to_string(collected_) + ", rejected " + std::to_string(rejected_) +
           ", skipped " + std::to_string(skipped_);
}

void Collector::Loop() {
    for (;;) {
        std::string line;
        const Arrival arrival = source_.Next(line, !HasPending());
        std::vector<std::string> messages;
        if (arrival == Arrival::kLine) {
            messages = joiner_.Add(line);
        }
        if (arrival == Arrival::kEnd || source_.GivesWholeMessages()) {
            for (std::string& message : joiner_.Finish()) {
                messages.push_back(std::move(message));
            }
        }
        for (std::string& message : messages) {
            Take(std::move(message));
        }
        // At the end of the source an open transaction is one that comes again.
        if ((arrival != Arrival::kLine || IsFull()) && !source_.InTransaction()) {
            Store();
        }
        if (arrival == Arrival::kEnd) {
            return;
        }
    }
}

void Collector::Take(std::string message) {
    if (FindRecord(message) == std::string::npos) {
        ++skipped_;
        return;
    }
    pending_bytes_ += message.size();
    try {
        records_.push_back(ReadAdminLogLine(message));
        messages_.push_back(std::move(message));
    } catch (const LineError& error) {
        Reject(std::move(message), error.what());
    }
}

void Collector::Reject(std::string message, const std::string& reason) {
    talk_ << "mailserver-log: rejected a line, kept in " << rejected_log_.Path() << ": " << reason
          << ": " << VisibleText(message.substr(0, kShownLength))
          << (message.size() > kShownLength ? "..." : "") << std::endl;
    rejections_.push_back({std::move(message), reason});
}

bool Collector::IsFull() const {
    return records_.size() >= kMostRecords || pending_bytes_ >= kMostBytes;
}

void Collector::Store() {
    const std::string task = std::string("store lines in ") + AdminStore::kPath;
    if (!records_.empty() && !retry_.Run(task, [this] { store_.Insert(records_); })) {
        GiveUp();
    }
    collected_ += std::exchange(records_, {}).size();
    messages_.clear();
    if (!rejections_.empty() && !retry_.Run("keep rejected lines in " + rejected_log_.Path(),
                                            [this] { rejected_log_.Append(rejections_); })) {
        GiveUp();
    }
    rejected_ += std::exchange(rejections_, {}).size();
    pending_bytes_ = 0;
    source_.Stored();
}

// Told to stop while storing fails.
void Collector::GiveUp() {
    const std::size_t count = records_.size() + rejections_.size();
    const std::string where =
        source_.ComesAgain() ? "they come again at the next start" : KeepElsewhere();
    throw Failure("stopped before " + std::to_string(count) + " lines could be stored; " + where);
}

// Nobody but us has the lines.
std::string Collector::KeepElsewhere() {
    records_.clear();
    for (std::string& message : std::exchange(messages_, {})) {
        Reject(std::move(message), "stopped while the store could not be written");
    }
    const std::vector<Rejection> rejections = std::exchange(rejections_, {});
    if (!KeepInstead(rejected_log_, rejections, source_, talk_)) {
        return "they stand above";
    }
    rejected_ += rejections.size();
    return "they are kept in " + rejected_log_.Path();
}

}  // namespace serverlog::program
