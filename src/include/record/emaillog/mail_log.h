#pragma once

#include <mailserver-log/export.h>
#include <mailserver-log/record/base_record.h>
#include <mailserver-log/record/columns.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace serverlog::record {

/// One event on a mail: a row of the table mail_log_table.
class MAILSERVER_LOG_EXPORT MailLog : public BaseRecord {
 public:
    /// The columns in insert order; see <mailserver-log/record/columns.h>.
    static constexpr auto Columns() {
        return std::make_tuple(
            Column{"date", &MailLog::date}, Column{"size", &MailLog::size},
            Column{"status", &MailLog::status}, Column{"host", &MailLog::host},
            Column{"mail_from", &MailLog::mail_from}, Column{"mail_to", &MailLog::mail_to},
            Column{"message_id", &MailLog::message_id},
            Column{"ori_mail_to", &MailLog::ori_mail_to}, Column{"queue_id", &MailLog::queue_id},
            Column{"subject", &MailLog::subject});
    }

    /// How a NULL in a text column is read.
    static constexpr NullText kNullText = NullText::Empty;

    const std::vector<std::string>& GetInsertFields() const override;

    /// A NULL in date, size or status throws soci::soci_error; a NULL text reads as empty.
    void soci_FromBase(const soci::values& values) override;
    void soci_ToBase(soci::values& values, soci::indicator& indicator) const override;

    ///@{
    /// What soci::into and soci::use do with a record. Take the columns from a fetched row, failing
    /// as soci_FromBase does, and give them to a statement; soci::soci_error if that takes one not.
    void ReadFrom(const StatementRow& row);
    void WriteTo(StatementRow& row) const;
    ///@}

    std::int32_t date = 0;    ///< seconds since the epoch
    std::int32_t size = 0;    ///< bytes
    std::int32_t status = 0;  ///< sent 0, received 1, bounced 2, resent 3, rejected 4
    std::string message_id;   ///< as the mail's header has it
    std::string queue_id;     ///< what the mail server calls the mail while it has it
    std::string mail_from;    ///< address of the sender; empty for a notification
    std::string mail_to;      ///< address of the recipient
    std::string host;         ///< host that logged the event
    std::string subject;      ///< may hold encoded words (RFC 2047)
    std::string ori_mail_to;  ///< recipient before aliases; may be empty
};

/// Compares all columns.
MAILSERVER_LOG_EXPORT bool operator==(const MailLog& a, const MailLog& b);

}  // namespace serverlog::record
