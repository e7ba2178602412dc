#pragma once

#include <mailserver-log/export.h>
#include <soci/soci.h>

#include <cstddef>
#include <string>
#include <vector>

namespace soci {
struct sqlite3_statement_backend;
}  // namespace soci

// Where SOCI's backend has the interface of SQLite.
namespace sqlite_api {
struct sqlite3_stmt;
}  // namespace sqlite_api

namespace serverlog::record {

/// The columns of a statement's present row, or the parameters of a statement that is to run, right
/// on the statement of SOCI's backend for SQLite.
///
/// A record goes through it when it is bound with soci::into or soci::use. It looks for each column
/// once a statement, and values are taken from where SQLite has them: through soci::values, which
/// allocates every value of every row and finds it by name, reading takes twice as long.
///
/// Belongs to the exchange element that holds it; the statement outlives it.
class MAILSERVER_LOG_EXPORT StatementRow {
 public:
    /// Takes the columns of `statement` from `position` on, counted from 1.
    /// @return the number of columns taken
    int AttachToColumns(soci::details::statement_impl& statement, int position);

    /// Looks at the columns once more: one without a declared type has that of its value, if there
    /// is a row already.
    void DescribeColumns();

    /// Takes the parameters of `statement`. soci::soci_error when values are bound to it already:
    /// the backend would put those in the place of the record's.
    void AttachToParameters(soci::details::statement_impl& statement);

    /// Has the parameters take new values. What was bound before stays where it is not replaced.
    void BeginBinding();

    /// Where a column stands.
    struct Place {
        int column;            ///< counted from 0 over the whole statement
        soci::data_type type;  ///< as it was declared
    };

    /// Where one of the record's columns stands. Throws soci::soci_error if it is not there.
    ///
    /// @param index  the record's columns counted from 0; asked for in this order at first
    /// @param name   the column's name; of two columns with it the last counts, as in SOCI
    Place ColumnAt(std::size_t index, const char* name) const {
        return index < places_.size() ? places_[index] : FindColumn(name);
    }

    /// Which parameter has the name of one of the record's columns; 0 if none has.
    int ParameterAt(std::size_t index, const char* name) {
        return index < parameters_.size() ? parameters_[index] : FindParameter(name);
    }

    /// The statement itself, for reading and binding.
    sqlite_api::sqlite3_stmt* Statement() const { return statement_; }

 private:
    struct Column {
        std::string name;
        soci::data_type type;
    };

    void AttachTo(soci::details::statement_impl& statement);
    Place FindColumn(const char* name) const;
    int FindParameter(const char* name);

    soci::sqlite3_statement_backend* backend_ = nullptr;
    sqlite_api::sqlite3_stmt* statement_ = nullptr;
    int first_ = 0;
    std::vector<Column> columns_;
    // Of the record's columns, found when they are asked for the first time.
    mutable std::vector<Place> places_;
    std::vector<int> parameters_;
};

}  // namespace serverlog::record

namespace soci::details {

template <>
struct exchange_traits<serverlog::record::StatementRow> {
    using type_family = basic_type_tag;
    enum { x_type = 0 };  // of no use to an exchange that has a class of its own
};

/// What soci::into of a record binds to a statement.
template <>
class into_type<serverlog::record::StatementRow> : public into_type_base {
 public:
    into_type(serverlog::record::StatementRow& row, indicator& /*whole*/) : row_(row) {}

    void define(statement_impl& statement, int& position) override {
        position += row_.AttachToColumns(statement, position);
    }
    void pre_exec(int /*number*/) override {}
    void pre_fetch() override {}
    void post_fetch(bool got_data, bool called_from_fetch) override {
        if (got_data) {
            // SOCI describes a row as soon as the statement has run: with its first row, where the
            // running has fetched that.
            if (!called_from_fetch) {
                row_.DescribeColumns();
            }
            convert_from_base();
        }
    }
    void clean_up() override {}
    std::size_t size() const override { return 1; }

 private:
    virtual void convert_from_base() {}

    serverlog::record::StatementRow& row_;
};

/// What soci::use of a record binds to a statement.
template <>
class use_type<serverlog::record::StatementRow> : public use_type_base {
 public:
    use_type(serverlog::record::StatementRow& row, indicator& /*whole*/, const std::string& name)
        : row_(row), name_(name) {}

    void bind(statement_impl& statement, int& /*position*/) override {
        row_.AttachToParameters(statement);
    }
    std::string get_name() const override { return name_; }
    void dump_value(std::ostream& out) const override { out << "<record>"; }
    void pre_exec(int /*number*/) override {}
    void pre_use() override {
        row_.BeginBinding();
        convert_to_base();
    }
    void post_use(bool /*got_data*/) override {}
    void clean_up() override {}
    std::size_t size() const override { return 1; }

    virtual void convert_to_base() {}
    virtual void convert_from_base() {}

 private:
    serverlog::record::StatementRow& row_;
    std::string name_;
};

}  // namespace soci::details
