#include "input/confirm_source.h"

#include <unistd.h>

#include "process/failure.h"

namespace serverlog::program {

namespace {

constexpr std::string_view kBegin = "BEGIN TRANSACTION";
constexpr std::string_view kCommit = "COMMIT TRANSACTION";

}  // namespace

ConfirmSource::ConfirmSource(int input, int output, const StopSignal& stop)
    : output_(output), lines_(input, stop), keep_alive_([output] {
          // If rsyslog is gone, the answer will tell.
          [[maybe_unused]] const ssize_t count = write(output, ".", 1);
      }) {
    Answer("OK");
}

Arrival ConfirmSource::Next(std::string& line, bool wait) {
    if (unanswered_) {
        return Arrival::kNothing;
    }
    for (;;) {
        // rsyslog sends the rest of a transaction without a pause worth storing in.
        const Arrival arrival = lines_.Next(line, wait || in_transaction_);
        if (arrival != Arrival::kLine) {
            return arrival;
        }
        if (line == kBegin) {
            in_transaction_ = true;
            Answer("OK");
        } else if (line == kCommit) {
            in_transaction_ = false;
            ExpectStored();
            return Arrival::kNothing;
        } else if (in_transaction_) {
            Answer("DEFER_COMMIT");
            return Arrival::kLine;
        } else {
            ExpectStored();
            return Arrival::kLine;
        }
    }
}

void ConfirmSource::Stored() {
    if (unanswered_) {
        keep_alive_.End();
        Answer("OK");
        unanswered_ = false;
    }
}

void ConfirmSource::ExpectStored() {
    unanswered_ = true;
    keep_alive_.Begin();
}

void ConfirmSource::Answer(std::string_view text) const {
    const std::string line = std::string(text) + '\n';
    // So short a text goes into a pipe whole or not at all.
    if (write(output_, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        throw Failure(DescribeErrno("rsyslog does not take the confirmation"));
    }
}

}  // namespace serverlog::program
