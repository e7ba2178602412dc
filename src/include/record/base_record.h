#pragma once

#include <mailserver-log/export.h>
#include <mailserver-log/record/statement_row.h>
#include <soci/soci.h>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace serverlog::record {

/// One row of a log table as a value.
///
/// SOCI exchanges any class that derives from this one: bind it with soci::into or soci::use.
/// A record belongs to its owner alone; one object is used by one thread at a time.
class MAILSERVER_LOG_EXPORT BaseRecord {
 public:
    /// The names of the columns that an insert fills, in the order of the insert.
    virtual const std::vector<std::string>& GetInsertFields() const = 0;

    virtual ~BaseRecord() = default;

    /// Whether the record may be stored; every log record may.
    virtual bool IsValid() const { return true; }

    /// Takes the record's fields from a fetched row.
    ///
    /// Throws soci::soci_error for a column that is missing or, where the record does not allow it,
    /// NULL, and std::bad_cast for a column of another declared type.
    virtual void soci_FromBase(const soci::values& values) = 0;

    /// Puts the record's fields into the values of a statement, each under its column's name, and
    /// sets the indicator of the whole record.
    virtual void soci_ToBase(soci::values& values, soci::indicator& indicator) const = 0;

 protected:
    ///@{
    /// As a part of a record only, so that none is cut down to this.
    BaseRecord() = default;
    BaseRecord(const BaseRecord&) = default;
    BaseRecord& operator=(const BaseRecord&) = default;
    ///@}
};

namespace internal {

template <class Record, class = void>
inline constexpr bool kReadsStatements = false;

template <class Record>
inline constexpr bool kReadsStatements<
    Record, std::void_t<decltype(std::declval<Record&>().ReadFrom(StatementRow()))>> = true;

}  // namespace internal

}  // namespace serverlog::record

namespace soci {

/// Lets SOCI exchange every record: straight with the statement where the record can do that,
/// through its two virtual operations otherwise.
template <class Record>
struct type_conversion<Record,
                       std::enable_if_t<std::is_base_of_v<serverlog::record::BaseRecord, Record>>> {
    static constexpr bool kDirect = serverlog::record::internal::kReadsStatements<Record>;
    using base_type = std::conditional_t<kDirect, serverlog::record::StatementRow, values>;

    static void from_base(const base_type& row, indicator /*whole*/, Record& record) {
        if constexpr (kDirect) {
            record.ReadFrom(row);
        } else {
            record.soci_FromBase(row);
        }
    }

    static void to_base(const Record& record, base_type& row, indicator& whole) {
        if constexpr (kDirect) {
            record.WriteTo(row);
            whole = i_ok;
        } else {
            record.soci_ToBase(row, whole);
        }
    }
};

}  // namespace soci
