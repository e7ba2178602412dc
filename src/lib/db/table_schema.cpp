#include "db/table_schema.h"

#include <vector>

#include "utils/strings.h"

namespace serverlog::db::internal {

namespace {

std::string CreateIndex(const SchemaIndex& index, const std::string& qualifier,
                        const std::string& table) {
    return "\nCREATE INDEX IF NOT EXISTS " + qualifier + index.name + " ON " + table + " (" +
           index.column + ");";
}

}  // namespace

std::string TableSchema::ColumnDefinitions(int version) const {
    std::vector<std::string> definitions;
    for (std::size_t i = 0; i < column_count_ && columns_[i].since <= version; ++i) {
        definitions.push_back("\n\t" + std::string(columns_[i].name) + " " + columns_[i].type);
    }
    return utils::Join(definitions, ",");
}

std::string TableSchema::ColumnNames(int version) const {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < column_count_ && columns_[i].since <= version; ++i) {
        names.emplace_back(columns_[i].name);
    }
    return utils::Join(names, ", ");
}

std::string TableSchema::CreateTable(int version) const {
    return "\nCREATE TABLE " + std::string(table_) + " (" + ColumnDefinitions(version) + ");";
}

std::string TableSchema::AddColumns(int version) const {
    std::string script;
    for (std::size_t i = 0; i < column_count_; ++i) {
        if (columns_[i].since == version) {
            script += "\nALTER TABLE " + std::string(table_) + " ADD COLUMN " + columns_[i].name +
                      " " + columns_[i].type + ";";
        }
    }
    return script;
}

std::string TableSchema::CreateIndices(int version) const {
    std::string script;
    for (std::size_t i = 0; i < index_count_; ++i) {
        if (indices_[i].since == version) {
            script += CreateIndex(indices_[i], "", table_);
        }
    }
    return script;
}

std::string TableSchema::CreateAllIndices() const {
    std::string script;
    for (std::size_t i = 0; i < index_count_; ++i) {
        script += CreateIndex(indices_[i], std::string(kSchemaPlaceholder) + ".", table_);
    }
    return script;
}

std::string TableSchema::DropIndicesBut(const std::string& column) const {
    std::string script;
    for (std::size_t i = 0; i < index_count_; ++i) {
        if (indices_[i].column != column) {
            script += "\nDROP INDEX IF EXISTS " + std::string(kSchemaPlaceholder) + "." +
                      indices_[i].name + ";";
        }
    }
    return script;
}

std::string TableSchema::CreateNewest() const {
    return CreateTable(columns_[column_count_ - 1].since) +
           utils::Replace(CreateAllIndices(), kSchemaPlaceholder, "main");
}

}  // namespace serverlog::db::internal
