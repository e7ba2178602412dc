#include <mailserver-log/record/emaillog/mail_log.h>

#include "record/column_exchange.h"

namespace serverlog::record {

const std::vector<std::string>& MailLog::GetInsertFields() const {
    static const std::vector<std::string> fields = ColumnNames<MailLog>();
    return fields;
}

void MailLog::soci_FromBase(const soci::values& values) {
    ReadColumns(values, *this);
}

void MailLog::soci_ToBase(soci::values& values, soci::indicator& indicator) const {
    WriteColumns(*this, values);
    indicator = soci::i_ok;
}

void MailLog::ReadFrom(const StatementRow& row) {
    ReadColumns(row, *this);
}

void MailLog::WriteTo(StatementRow& row) const {
    WriteColumns(*this, row);
}

template class RowView<MailLog>;

bool operator==(const MailLog& a, const MailLog& b) {
    return EqualColumns(a, b);
}

}  // namespace serverlog::record
