#include "mail_events/mail_collector.h"

#include <unistd.h>

#include <utility>

#include "collect/last_resort.h"
#include "output/display_text.h"
#include "process/failure.h"

namespace serverlog::program {

namespace {

using std::chrono::steady_clock;

constexpr std::size_t kMostLines = 20000;
constexpr std::size_t kMostBytes = std::size_t{8} << 20;
// Counts of lines that gave nothing may wait; writing them takes as long as writing a row.
constexpr std::chrono::seconds kLongestCount{10};
// Of lines that can't be read, so many are shown, and so much of each.
constexpr std::size_t kMostShown = 10;
constexpr std::size_t kShownLength = 200;

std::string HostName() {
    char name[256] = {};
    gethostname(name, sizeof name - 1);
    return name;
}

}  // namespace

MailCollector::MailCollector(MessageSource& source, MailEventStore& store,
                             const RejectedLog& rejected_log, Retry& retry, std::ostream& talk)
    : source_(source),
      store_(store),
      rejected_log_(rejected_log),
      retry_(retry),
      talk_(talk),
      patient_store_(store, retry),
      mails_(patient_store_),
      fingerprints_(patient_store_.Key()),
      tracker_(mails_, fingerprints_),
      security_(mails_, fingerprints_),
      reader_(HostName()),
      stored_at_(steady_clock::now()) {}

void MailCollector::Run() {
    try {
        Loop();
    } catch (const Failure&) {
        if (!source_.ComesAgain() && HasPending()) {
            Store(true);
        }
        throw;
    }
}

std::string MailCollector::Summary() const {
    return "collected " + std::to_string(counts_.mail) + " mail, " +
           std::to_string(counts_.security) + " security, skipped " +
           std::to_string(counts_.skipped) + ", unreadable " + std::to_string(counts_.unreadable);
}

std::string MailCollector::Skipped() const {
    std::string text;
    for (const auto& [program, count] : counts_.skipped_by_program) {
        text += (text.empty() ? "" : ", ") + VisibleText(program) + " " + std::to_string(count);
    }
    return text;
}

void MailCollector::Loop() {
    for (;;) {
        std::string line;
        const Arrival arrival = source_.Next(line, !HasPending());
        if (arrival == Arrival::kLine) {
            Take(std::move(line));
        }
        // At the end of the source an open transaction is one that comes again.
        if ((arrival != Arrival::kLine || IsFull()) && !source_.InTransaction()) {
            Store(arrival == Arrival::kEnd);
        }
        if (arrival == Arrival::kEnd) {
            return;
        }
    }
}

void MailCollector::Take(std::string line) {
    pending_bytes_ += line.size();
    lines_.push_back(std::move(line));
    try {
        Read(lines_.back());
    } catch (const Failure&) {
        // The line is taken in part, so what is pending can't be stored any more.
        GiveUp();
    }
}

void MailCollector::Read(const std::string& line) {
    ++batch_.counts.lines;
    LogLine parsed;
    if (!reader_.Read(line, parsed)) {
        ++batch_.counts.unreadable;
        if (++counts_.unreadable <= kMostShown) {
            talk_ << "mailserver-log: cannot read a line: "
                  << VisibleText(line.substr(0, kShownLength))
                  << (line.size() > kShownLength ? "..." : "") << std::endl;
        }
        return;
    }
    batch_.newest_line = parsed.stamp.seconds;
    const bool is_security = security_.Take(parsed, batch_.security);
    const bool is_mail = tracker_.Take(parsed, batch_.mail);
    if (!is_security && !is_mail) {
        ++batch_.counts.skipped;
        ++batch_.counts.skipped_by_program[counts_.Skip(parsed.program)];
    }
}

bool MailCollector::IsFull() const {
    return lines_.size() >= kMostLines || pending_bytes_ >= kMostBytes;
}

bool MailCollector::IsWorthStoring() const {
    return mails_.HasChanged() || !batch_.mail.empty() || !batch_.security.empty() ||
           steady_clock::now() - stored_at_ >= kLongestCount;
}

void MailCollector::Store(bool at_end) {
    if (at_end || IsWorthStoring()) {
        Commit();
    }
    lines_.clear();
    pending_bytes_ = 0;
    source_.Stored();
}

void MailCollector::Commit() {
    Counts stored;
    if (!retry_.Run("store mail events", [&] { stored = store_.Commit(batch_, mails_); })) {
        GiveUp();
    }
    counts_.mail += stored.mail;
    counts_.security += stored.security;
    batch_ = {};
    mails_.Committed();
    stored_at_ = steady_clock::now();
}

// Told to stop while the files can't be read or written.
void MailCollector::GiveUp() {
    std::vector<Rejection> rejections;
    for (std::string& line : std::exchange(lines_, {})) {
        rejections.push_back({std::move(line), "stopped while the stores could not be written"});
    }
    std::string where = "they come again at the next start";
    if (!source_.ComesAgain()) {
        const bool is_kept = KeepInstead(rejected_log_, rejections, source_, talk_);
        where = is_kept ? "they are kept in " + rejected_log_.Path() : "they stand above";
    }
    throw Failure("stopped before " + std::to_string(rejections.size()) +
                  " lines could be stored; " + where);
}

}  // namespace serverlog::program
