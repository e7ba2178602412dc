#pragma once

#include <mailserver-log/record/emaillog/mail_log.h>
#include <mailserver-log/record/securitylog/security_log.h>

#include <memory>
#include <ostream>
#include <string>

#include "output/table_writer.h"

namespace serverlog::program {

/// Writes rows of the mail and of the security store in one list.
class TraceWriter {
 public:
    virtual ~TraceWriter() = default;
    virtual void Write(const record::MailLog& row) = 0;
    virtual void Write(const record::SecurityLog& row) = 0;

    /// To be called once, behind the last row.
    virtual void Finish() = 0;
};

/// A writer of the format that "table" or "json" names: a table for a person, or an array with an
/// object a row, whose members are `store` and the columns of that store.
///
/// @param out    must outlive the result
/// @param style  what a table looks like
std::unique_ptr<TraceWriter> MakeTraceWriter(const std::string& format, std::ostream& out,
                                             TableWriter::Style style);

}  // namespace serverlog::program
