#include <mailserver-log/record/adminlog/admin_log.h>

#include "record/column_exchange.h"

namespace serverlog::record {

const std::vector<std::string>& AdminLog::GetInsertFields() const {
    static const std::vector<std::string> fields = ColumnNames<AdminLog>();
    return fields;
}

void AdminLog::soci_FromBase(const soci::values& values) {
    ReadColumns(values, *this);
}

void AdminLog::soci_ToBase(soci::values& values, soci::indicator& indicator) const {
    WriteColumns(*this, values);
    indicator = soci::i_ok;
}

void AdminLog::ReadFrom(const StatementRow& row) {
    ReadColumns(row, *this);
}

void AdminLog::WriteTo(StatementRow& row) const {
    WriteColumns(*this, row);
}

template class RowView<AdminLog>;

bool operator==(const AdminLog& a, const AdminLog& b) {
    return EqualColumns(a, b);
}

}  // namespace serverlog::record
