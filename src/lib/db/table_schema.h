#pragma once

#include <cstddef>
#include <string>

namespace serverlog::db::internal {

/// Stands for the schema name in an index script until it is known.
inline constexpr char kSchemaPlaceholder[] = "#DB#";

/// A column of a log table.
struct SchemaColumn {
    const char* name;
    const char* type;  ///< as in CREATE TABLE, constraints included
    int since;         ///< the first schema version that has it
};

/// An index on one column of a log table.
struct SchemaIndex {
    const char* name;
    const char* column;
    int since;  ///< the first schema version that has it
};

/// A log table's columns and indices through all schema versions, and the SQL texts that follow.
///
/// A version of the schema is what the schema before had and what is marked with it, behind
/// that. So the newest schema and the steps that lead to it read the same rows.
class TableSchema {
 public:
    /// @param table             the table's name
    /// @param columns, indices  ascending by version; must outlive this object, as the name must
    template <std::size_t ColumnCount, std::size_t IndexCount>
    constexpr TableSchema(const char* table, const SchemaColumn (&columns)[ColumnCount],
                          const SchemaIndex (&indices)[IndexCount])
        : table_(table),
          columns_(columns),
          column_count_(ColumnCount),
          indices_(indices),
          index_count_(IndexCount) {}

    constexpr const char* Table() const { return table_; }

    /// "<name> <type>" of the columns of a version, for CREATE TABLE.
    std::string ColumnDefinitions(int version) const;

    /// The names of the columns of a version, joined with ", ".
    std::string ColumnNames(int version) const;

    /// The script that makes the table as it is in a version.
    std::string CreateTable(int version) const;

    /// The script that adds the columns that came with a version.
    std::string AddColumns(int version) const;

    /// The script that makes the indices that came with a version, in the session's main schema.
    std::string CreateIndices(int version) const;

    /// The script that makes all indices in the schema that is put for kSchemaPlaceholder.
    std::string CreateAllIndices() const;

    /// The script that drops all indices but those on a column, in the schema that is put for
    /// kSchemaPlaceholder.
    std::string DropIndicesBut(const std::string& column) const;

    /// The script that makes the newest schema in an empty file.
    std::string CreateNewest() const;

 private:
    const char* table_;
    const SchemaColumn* columns_;
    std::size_t column_count_;
    const SchemaIndex* indices_;
    std::size_t index_count_;
};

}  // namespace serverlog::db::internal
