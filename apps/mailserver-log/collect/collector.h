#pragma once

#include <mailserver-log/record/adminlog/admin_log.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "collect/admin_log_store.h"
#include "collect/record_joiner.h"
#include "collect/rejected_log.h"
#include "input/message_source.h"
#include "process/retry.h"

namespace serverlog::program {

/// Takes the admin log lines out of a source and stores each as a row of the admin log, many in one
/// transaction where many wait. A line that claims to be one and can't be read goes to the log of
/// rejected lines instead.
class Collector {
 public:
    /// All must outlive this object.
    Collector(MessageSource& source, AdminLogStore& store, const RejectedLog& rejected_log,
              Retry& retry, std::ostream& talk);

    /// Works until the source ends. Throws Failure if the source fails, or if it had to give up on
    /// lines that could not be stored.
    void Run();

    /// "collected N, rejected N, skipped N": rows stored, lines kept as rejected, other lines.
    std::string Summary() const;

 private:
    void Loop();
    void Take(std::string message);
    void Reject(std::string message, const std::string& reason);
    bool IsFull() const;
    bool HasPending() const { return !records_.empty() || !rejections_.empty(); }
    void Store();
    [[noreturn]] void GiveUp();
    std::string KeepElsewhere();

    MessageSource& source_;
    AdminLogStore& store_;
    const RejectedLog& rejected_log_;
    Retry& retry_;
    std::ostream& talk_;
    RecordJoiner joiner_;

    // What is read but not stored yet. Each record's message is kept until then.
    std::vector<record::AdminLog> records_;
    std::vector<std::string> messages_;
    std::vector<Rejection> rejections_;
    std::size_t pending_bytes_ = 0;

    std::size_t collected_ = 0;
    std::size_t rejected_ = 0;
    std::size_t skipped_ = 0;
};

}  // namespace serverlog::program
