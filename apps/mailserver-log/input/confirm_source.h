#pragma once

#include <string>
#include <string_view>

#include "input/keep_alive.h"
#include "input/line_reader.h"
#include "input/message_source.h"

namespace serverlog::program {

/// Messages from rsyslog's omprog with its confirmations (parameters `confirmMessages` and
/// `useTransactions` in omprog's manual). Each line is one message. It is answered with "OK" once
/// it is stored, in a transaction with "DEFER_COMMIT" at once; the marks of a transaction are
/// answered with "OK", the closing one once all is stored. While storing takes its time, points are
/// written before the answer, which keep rsyslog from restarting the program.
///
/// A line that was not answered comes again if this program ends, but not if rsyslog does: what it
/// has in hand then is in none of its queues. As both look alike from here, no line counts as one
/// that comes again.
class ConfirmSource : public MessageSource {
 public:
    /// Tells rsyslog that the program is ready.
    ///
    /// @param input, output  stay the caller's; must stay open
    /// @param stop           must outlive this object
    ConfirmSource(int input, int output, const StopSignal& stop);

    /// Gives kNothing until the last message is answered. Throws Failure also if rsyslog does not
    /// take an answer.
    Arrival Next(std::string& line, bool wait) override;
    void Stored() override;
    bool InTransaction() const override { return in_transaction_; }

 private:
    void ExpectStored();
    void Answer(std::string_view text) const;

    int output_;
    LineReader lines_;
    bool in_transaction_ = false;
    bool unanswered_ = false;
    KeepAlive keep_alive_;
};

}  // namespace serverlog::program
