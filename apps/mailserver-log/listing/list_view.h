#pragma once

#include <mailserver-log/record/columns.h>
#include <mailserver-log/record/row_view.h>
#include <mailserver-log/utils/time_text.h>

#include <charconv>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>
#include <type_traits>
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

/// The word of a mail's status; empty where it has none.
std::string_view StatusWord(std::int32_t status);

/// The cells of a store's rows as a person reads them: the date as local time, the status of a mail
/// as its word, or its number where it has none. Texts are handed on from where they lie, without a
/// copy.
template <class Record>
class ReadableCells {
 public:
    /// Calls `visit(cell)` with each cell, one a column in the record's order; a cell is valid
    /// during the call.
    template <class Visit>
    void ForEach(const record::RowView<Record>& row, Visit visit) {
        row.ForEach(
            [&](const auto& column, const auto& value) { visit(Cell(column.member, value)); });
    }

 private:
    template <class A, class B>
    static bool IsMember(A a, B b) {
        if constexpr (std::is_same_v<A, B>) {
            return a == b;
        } else {
            return false;
        }
    }

    std::string_view Cell(std::string Record::* /*member*/, std::string_view value) const {
        return value;
    }

    std::string_view Cell(Json::Value Record::* /*member*/, const Json::Value& value) {
        return text_ = record::internal::WriteText(value);
    }

    template <class Value>
    std::string_view Cell(Value Record::*member, Value value) {
        if (IsMember(member, &Record::date)) {
            return Date(static_cast<std::time_t>(value));
        }
        if constexpr (std::is_same_v<Record, record::MailLog>) {
            if (member == &record::MailLog::status) {
                const std::string_view word = StatusWord(value);
                return word.empty() ? Decimal(value) : word;
            }
        }
        return Decimal(value);
    }

    // Its number where it has no date in the calendar.
    std::string_view Date(std::time_t time) {
        const std::string_view text = times_.Of(time);
        return text.empty() ? Decimal(time) : text;
    }

    template <class Value>
    std::string_view Decimal(Value value) {
        const auto end = std::to_chars(digits_, digits_ + sizeof digits_, value).ptr;
        return {digits_, static_cast<std::size_t>(end - digits_)};
    }

    utils::TimeText times_;
    std::string text_;
    char digits_[24] = {};
};

}  // namespace serverlog::program
