#pragma once

#include <string>

#include "input/arrival.h"

namespace serverlog::program {

/// Where the collector gets its lines from.
class MessageSource {
 public:
    virtual ~MessageSource() = default;

    /// Gives the next line. kNothing and kEnd ask the caller to store what it has.
    ///
    /// @param wait  whether to wait for a line that is not there yet
    ///
    /// Throws Failure if the source fails.
    virtual Arrival Next(std::string& line, bool wait) = 0;

    /// Whether each line is a whole message of the system log, with whatever line feeds it has;
    /// otherwise a message that holds line feeds comes as several lines.
    virtual bool GivesWholeMessages() const { return true; }

    /// To be called when all lines given so far are stored for good, or need not be.
    virtual void Stored() {}

    /// Whether the lines given since the last Stored come again if Stored is never called, because
    /// somebody else keeps them.
    virtual bool ComesAgain() const { return false; }

    /// Whether the lines may not be stored now, since they belong to a transaction that goes on.
    virtual bool InTransaction() const { return false; }
};

}  // namespace serverlog::program
