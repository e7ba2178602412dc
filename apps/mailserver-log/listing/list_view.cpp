#include "listing/list_view.h"

#include <cstddef>
#include <iterator>

#include "listing/list_filters.h"

namespace serverlog::program {

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

std::string_view StatusWord(std::int32_t status) {
    const auto index = static_cast<std::size_t>(status);
    return index < std::size(kStatusWords) ? kStatusWords[index] : std::string_view();
}

}  // namespace serverlog::program
