#include "mailserver/sql_cmd.h"

SQLCmd& SQLCmd::operator+=(const char* statement) {
    statements_.emplace_back(statement);
    return *this;
}

SQLCmd& SQLCmd::operator+=(const SQLCmd& other) {
    statements_.reserve(statements_.size() + other.statements_.size());
    for (std::size_t i = 0, count = other.statements_.size(); i < count; ++i) {
        statements_.push_back(other.statements_[i]);
    }
    return *this;
}
