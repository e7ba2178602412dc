#pragma once

#include <string>

#include "input/line_reader.h"
#include "input/message_source.h"
#include "process/child_process.h"
#include "process/retry.h"

namespace serverlog::program {

/// Which messages of the systemd journal are read, and how they are given.
struct JournalSelection {
    const char* priorities;  ///< range, as journalctl takes it
    bool with_head;          ///< behind time, host and program, as in a log file; else alone
};

/// Messages of facility mail from the systemd journal, read through journalctl(1). The place up to
/// which they are stored is kept in a file, so that the next run goes on there; the first run
/// starts with the oldest entry.
class JournalSource : public MessageSource {
 public:
    /// @param place_path  the file of the place; replaced as a whole
    /// @param once        end with the newest entry, instead of waiting for more
    /// @param stop        must outlive this object
    /// @param retry       must outlive this object
    ///
    /// Throws Failure if journalctl can't be started.
    JournalSource(const JournalSelection& selection, std::string place_path, bool once,
                  const StopSignal& stop, Retry& retry);

    /// Throws Failure if journalctl fails or writes what can't be read.
    Arrival Next(std::string& line, bool wait) override;
    void Stored() override;
    bool ComesAgain() const override { return true; }

 private:
    void Decode(const std::string& entry, std::string& line);
    void SavePlace() const;

    const bool with_head_;
    std::string place_path_;
    const StopSignal& stop_;
    Retry& retry_;
    std::string place_;        // of the newest entry given
    std::string saved_place_;  // what the file holds
    ChildProcess journal_;
    LineReader entries_;
};

}  // namespace serverlog::program
