#include <mailserver-log/record/securitylog/security_log.h>

#include "record/column_exchange.h"

namespace serverlog::record {

const std::vector<std::string>& SecurityLog::GetInsertFields() const {
    static const std::vector<std::string> fields = ColumnNames<SecurityLog>();
    return fields;
}

void SecurityLog::soci_FromBase(const soci::values& values) {
    ReadColumns(values, *this);
}

void SecurityLog::soci_ToBase(soci::values& values, soci::indicator& indicator) const {
    WriteColumns(*this, values);
    indicator = soci::i_ok;
}

void SecurityLog::ReadFrom(const StatementRow& row) {
    ReadColumns(row, *this);
}

void SecurityLog::WriteTo(StatementRow& row) const {
    WriteColumns(*this, row);
}

template class RowView<SecurityLog>;

bool operator==(const SecurityLog& a, const SecurityLog& b) {
    return EqualColumns(a, b);
}

}  // namespace serverlog::record
