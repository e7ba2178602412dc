#pragma once

#include <mailserver-log/export.h>
#include <mailserver-log/record/base_record.h>
#include <mailserver-log/record/columns.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace serverlog::record {

/// One rejected or filtered message: a row of the table security_log_table.
class MAILSERVER_LOG_EXPORT SecurityLog : public BaseRecord {
 public:
    /// The columns in insert order; see <mailserver-log/record/columns.h>.
    static constexpr auto Columns() {
        return std::make_tuple(
            Column{"date", &SecurityLog::date}, Column{"event", &SecurityLog::event},
            Column{"host", &SecurityLog::host}, Column{"recipient", &SecurityLog::recipient},
            Column{"sender", &SecurityLog::sender}, Column{"src", &SecurityLog::src},
            Column{"subject", &SecurityLog::subject}, Column{"type", &SecurityLog::type});
    }

    /// How a NULL in a text column is read.
    static constexpr NullText kNullText = NullText::Empty;

    const std::vector<std::string>& GetInsertFields() const override;

    /// A NULL in date throws soci::soci_error; a NULL text reads as empty.
    void soci_FromBase(const soci::values& values) override;
    void soci_ToBase(soci::values& values, soci::indicator& indicator) const override;

    ///@{
    /// What soci::into and soci::use do with a record. Take the columns from a fetched row, failing
    /// as soci_FromBase does, and give them to a statement; soci::soci_error if that takes one not.
    void ReadFrom(const StatementRow& row);
    void WriteTo(StatementRow& row) const;
    ///@}

    std::int32_t date = 0;  ///< seconds since the epoch
    std::string src;        ///< address of the host that the mail came from
    std::string type;       ///< why, as a word: reject, spam, virus, …
    std::string event;      ///< what the filter said
    std::string host;       ///< host that logged the event
    std::string sender;     ///< address; may be empty
    std::string recipient;  ///< address; may be empty
    std::string subject;    ///< may hold encoded words (RFC 2047)
};

/// Compares all columns.
MAILSERVER_LOG_EXPORT bool operator==(const SecurityLog& a, const SecurityLog& b);

}  // namespace serverlog::record
