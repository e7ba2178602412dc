#pragma once

#include <string>
#include <vector>

#include "stores/stores.h"

namespace serverlog::program {

/// A column of a store's table for a person.
struct TableColumn {
    const char* heading;
    const char* column;
};

/// What the table of each store shows, from left to right.
const std::vector<TableColumn>& TableColumns(const AdminStore& store);
const std::vector<TableColumn>& TableColumns(const MailStore& store);
const std::vector<TableColumn>& TableColumns(const SecurityStore& store);

/// A record's cells, one a column in the record's order, as a person reads them: the date as local
/// time, the status of a mail as its word.
std::vector<std::string> ReadableCells(const record::AdminLog& record);
std::vector<std::string> ReadableCells(const record::MailLog& record);
std::vector<std::string> ReadableCells(const record::SecurityLog& record);

}  // namespace serverlog::program
