#pragma once

#include <json/json.h>
#include <mailserver-log/export.h>
#include <mailserver-log/record/columns.h>
#include <mailserver-log/record/statement_row.h>
#include <soci/soci.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace serverlog::record {

namespace internal {

/// What a view has in place of a member: the same.
template <class Value>
struct Viewed {
    using Type = Value;  ///< of the view
};

/// A text stays where it lies.
template <>
struct Viewed<std::string> {
    using Type = std::string_view;  ///< of the view
};

/// Which of a record's columns, counted from 0, belongs to a member.
template <class Record, auto Member>
constexpr std::size_t IndexOf() {
    std::size_t found = kColumnCount<Record>;
    ForEachIndexedColumn<Record>([&found](auto index, const auto& column) {
        if constexpr (std::is_same_v<decltype(column.member), decltype(Member)>) {
            found = column.member == Member ? index : found;
        }
    });
    return found;
}

/// What a view has in place of all members.
template <class Columns>
struct ViewedColumns;

/// Taken from the record's list of columns.
template <class Record, class... Value>
struct ViewedColumns<std::tuple<Column<Record, Value>...>> {
    using Type = std::tuple<typename Viewed<Value>::Type...>;  ///< one value a column
};

}  // namespace internal

/// The values of a record's columns with the texts where they lie, so that rows which are only
/// written somewhere are not copied into a record first: 8 % of the instructions of an export.
///
/// Bind it with soci::into in the place of a record; it takes what the record takes and fails as
/// that does. Its texts are valid until the next row is fetched. The library holds it for its three
/// records.
template <class Record>
class MAILSERVER_LOG_EXPORT RowView {
 public:
    RowView() = default;

    /// A view of a record, which must outlive it; not explicit, as with std::string_view.
    RowView(const Record& record) {
        ForEachIndexedColumn<Record>([&](auto index, const auto& column) {
            std::get<decltype(index)::value>(values_) = record.*column.member;
        });
    }

    /// The value of a column, counted from 0 in the order of the record's list: a number, a
    /// std::string_view or a JSON value.
    template <std::size_t Index>
    const auto& Get() const {
        return std::get<Index>(values_);
    }

    /// The value of the column of a member of the record.
    template <auto Member>
    const auto& Of() const {
        return Get<internal::IndexOf<Record, Member>()>();
    }

    /// Calls `visit(column, value)` for each column, in order.
    template <class Visit>
    void ForEach(Visit visit) const {
        ForEachIndexedColumn<Record>([&](auto index, const auto& column) {
            visit(column, this->template Get<decltype(index)::value>());
        });
    }

    /// What soci::into does with a view: takes the columns from a fetched row, failing as the
    /// record's soci_FromBase does.
    void ReadFrom(const StatementRow& row);

 private:
    typename internal::ViewedColumns<decltype(Record::Columns())>::Type values_;
};

}  // namespace serverlog::record

namespace soci {

/// Lets SOCI read into a view, on the statement itself.
template <class Record>
struct type_conversion<serverlog::record::RowView<Record>> {
    using base_type = serverlog::record::StatementRow;

    static void from_base(const base_type& row, indicator /*whole*/,
                          serverlog::record::RowView<Record>& view) {
        view.ReadFrom(row);
    }
};

}  // namespace soci
