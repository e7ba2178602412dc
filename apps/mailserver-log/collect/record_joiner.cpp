#include "collect/record_joiner.h"

#include <algorithm>
#include <utility>

#include "collect/admin_log_line.h"

namespace serverlog::program {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

}  // namespace

std::vector<std::string> RecordJoiner::Add(std::string_view line) {
    std::vector<std::string> messages;
    if (!open_.empty() && !GoOn(line, messages)) {
        return messages;
    }
    Start(line, messages);
    return messages;
}

std::vector<std::string> RecordJoiner::Finish() {
    std::vector<std::string> messages;
    if (!open_.empty()) {
        messages.push_back(std::exchange(open_, {}));
    }
    return messages;
}

// Reads on in the open record. False if it took the whole line; else the record has ended, and
// `line` is what is left.
bool RecordJoiner::GoOn(std::string_view& line, std::vector<std::string>& messages) {
    if (StartsWithSyslogTime(open_) && StartsWithSyslogTime(line)) {
        messages.push_back(std::exchange(open_, {}));
        return true;
    }
    const std::size_t next = FindRecord(line);
    const std::string_view part = line.substr(0, next);
    ObjectScanner scanner = scanner_;
    scanner.Scan("\n");
    const std::size_t end = scanner.Scan(part);
    if (end == ObjectScanner::kOpen && next != kNone) {
        // Cut short. What stands before the new record belongs to that one.
        messages.push_back(std::exchange(open_, {}));
        return true;
    }
    open_ += '\n';
    open_ += part.substr(0, end);
    if (end == ObjectScanner::kOpen) {
        scanner_ = scanner;
        if (open_.size() > longest_) {
            messages.push_back(std::exchange(open_, {}));
        }
        return false;
    }
    messages.push_back(std::exchange(open_, {}));
    line.remove_prefix(end);
    return next != kNone;
}

void RecordJoiner::Start(std::string_view line, std::vector<std::string>& messages) {
    for (bool whole = true;; whole = false) {
        const std::size_t begin = FindRecord(line);
        if (begin == kNone || !IsSyslogPrefix(line.substr(0, begin))) {
            // Behind a record there may be rubbish; a whole line is somebody's to count.
            if (whole || begin != kNone) {
                messages.emplace_back(line);
            }
            return;
        }
        const std::size_t next = FindRecord(line, begin + 1);
        ObjectScanner scanner;
        const std::size_t end = scanner.Scan(line.substr(begin, next - begin));
        if (end == ObjectScanner::kOpen && next == kNone && line.size() <= longest_) {
            open_ = line;
            scanner_ = scanner;
            return;
        }
        const std::size_t length = end == ObjectScanner::kOpen ? next : begin + end;
        messages.emplace_back(line.substr(0, length));
        line.remove_prefix(std::min(length, line.size()));
        if (line.empty()) {
            return;
        }
    }
}

}  // namespace serverlog::program
