#pragma once

#include <mailserver-log/export.h>
#include <soci/soci.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace soci {
struct sqlite3_statement_backend;
}  // namespace soci

namespace serverlog::record {

/// The columns of a statement's present row, or the parameters of a statement that is to run, right
/// on the statement of SOCI's backend for SQLite.
///
/// A record goes through it when it is bound with soci::into or soci::use. Its texts are taken into
/// strings that keep their memory from row to row, and a column is looked for once a statement:
/// through soci::values, which allocates every value of every row and finds it by name, reading
/// takes twice as long.
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

    ///@{
    /// Reads a column, of the declared type that SOCI would want for the value's type.
    ///
    /// @param index  the record's columns counted from 0; read and bound in this order
    /// @param name   the column's name
    /// @return false, with `value` unchanged, for a NULL; std::bad_cast for another declared type,
    ///         soci::soci_error for a column that is not there
    bool Read(std::size_t index, const char* name, std::int32_t& value) const;
    bool Read(std::size_t index, const char* name, std::int64_t& value) const;
    bool Read(std::size_t index, const char* name, std::string& value) const;
    ///@}

    /// Whether a column is declared as a text. soci::soci_error as Read.
    bool IsText(std::size_t index, const char* name) const;

    /// Whether a column is NULL, whatever its declared type is. soci::soci_error as Read.
    bool IsNull(std::size_t index, const char* name) const;

    ///@{
    /// Binds a value to the parameter of that name, if the statement has one. soci::soci_error when
    /// SQLite does not take it.
    ///
    /// @param value  a text must stay until the statement has run
    void Bind(std::size_t index, const char* name, std::int32_t value);
    void Bind(std::size_t index, const char* name, std::int64_t value);
    void Bind(std::size_t index, const char* name, const std::string& value);
    ///@}

    /// Binds a text of which SQLite keeps a copy.
    void BindCopy(std::size_t index, const char* name, const std::string& value);

 private:
    struct Column {
        std::string name;
        soci::data_type type;
    };

    // Places count from 0; kNowhere is that of a name that the statement does not have.
    static constexpr int kNowhere = -1;

    int Place(std::size_t index, const char* name) const;
    int TypedPlace(std::size_t index, const char* name, soci::data_type type) const;
    int Parameter(std::size_t index, const char* name);
    void BindText(std::size_t index, const char* name, const std::string& value, bool copy);

    soci::sqlite3_statement_backend* backend_ = nullptr;
    int first_ = 0;
    std::vector<Column> columns_;
    // Of the record's columns, found when they are used for the first time.
    mutable std::vector<int> places_;
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
