#include <merodbquery/session.h>

#include "merodbquery/connection.h"

namespace merodbquery {

Session::Session(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {}

Session Session::SQLite(const std::string& path) {
    return Session(std::make_shared<Connection>(path));
}

bool Session::Good() const {
    return connection_->Usable();
}

bool Session::RawQuery(const std::string& statement) {
    return connection_->Run(statement);
}

soci::session& Session::GetRawSession() {
    return connection_->RawSession();
}

KeptStatement& Session::Kept(const std::string& text) {
    return connection_->Kept(text);
}

void Session::DropStatement(const std::string& text) {
    connection_->DropStatement(text);
}

void Session::Disconnect() {
    connection_->Close();
}

}  // namespace merodbquery
