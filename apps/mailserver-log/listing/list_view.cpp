#include "listing/list_view.h"

#include <mailserver-log/record/columns.h>

#include <cstddef>
#include <ctime>
#include <iterator>
#include <type_traits>

#include "listing/list_filters.h"

namespace serverlog::program {

namespace {

template <class Number>
std::string LocalTime(Number seconds) {
    const auto time = static_cast<std::time_t>(seconds);
    std::tm local = {};
    char text[64];
    if (localtime_r(&time, &local) == nullptr ||
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local) == 0) {
        return std::to_string(seconds);
    }
    return text;
}

std::string StatusWord(std::int32_t status) {
    const auto index = static_cast<std::size_t>(status);
    return index < std::size(kStatusWords) ? kStatusWords[index] : std::to_string(status);
}

// Puts `text` in place of the cell of the column whose values `member` holds.
template <class Record, class Value>
void SetCell(std::vector<std::string>& cells, Value Record::*member, const std::string& text) {
    std::size_t index = 0;
    record::ForEachColumn<Record>([&](const auto& column) {
        if constexpr (std::is_same_v<decltype(column.member), Value Record::*>) {
            if (column.member == member) {
                cells[index] = text;
            }
        }
        ++index;
    });
}

template <class Record>
std::vector<std::string> CellsWithDate(const Record& record) {
    std::vector<std::string> cells = record::ToCells(record);
    SetCell(cells, &Record::date, LocalTime(record.date));
    return cells;
}

}  // namespace

const std::vector<TableColumn>& TableColumns(const AdminStore& /*store*/) {
    static const std::vector<TableColumn> columns = {
        {"DATE", "date"},     {"USER", "user"},    {"ADDRESS", "ip"},
        {"SERVER", "server"}, {"TAB", "tab_type"}, {"STATEMENT", "statement"},
    };
    return columns;
}

const std::vector<TableColumn>& TableColumns(const MailStore& /*store*/) {
    static const std::vector<TableColumn> columns = {
        {"DATE", "date"},  {"STATUS", "status"}, {"FROM", "mail_from"},
        {"TO", "mail_to"}, {"SIZE", "size"},     {"SUBJECT", "subject"},
    };
    return columns;
}

const std::vector<TableColumn>& TableColumns(const SecurityStore& /*store*/) {
    static const std::vector<TableColumn> columns = {
        {"DATE", "date"},     {"TYPE", "type"},           {"SOURCE", "src"},
        {"SENDER", "sender"}, {"RECIPIENT", "recipient"}, {"SUBJECT", "subject"},
        {"EVENT", "event"},
    };
    return columns;
}

std::vector<std::string> ReadableCells(const record::AdminLog& record) {
    return CellsWithDate(record);
}

std::vector<std::string> ReadableCells(const record::MailLog& record) {
    std::vector<std::string> cells = CellsWithDate(record);
    SetCell(cells, &record::MailLog::status, StatusWord(record.status));
    return cells;
}

std::vector<std::string> ReadableCells(const record::SecurityLog& record) {
    return CellsWithDate(record);
}

}  // namespace serverlog::program
