#include <mailserver-log/db/single_db_session.h>

#include <memory>

namespace serverlog::db {

SingleDBSession& SingleDBSession::Instance() {
    static SingleDBSession instance;
    return instance;
}

SingleDBSession::~SingleDBSession() {
    for (const auto& [path, session] : sessions_) {
        session->Disconnect();
        delete session;
    }
}

merodbquery::Session* SingleDBSession::GetSession(const std::string& path) {
    const auto found = sessions_.find(path);
    if (found != sessions_.end()) {
        return found->second;
    }
    auto session = std::make_unique<merodbquery::Session>(merodbquery::Session::SQLite(path));
    sessions_.emplace(path, session.get());
    return session.release();
}

}  // namespace serverlog::db
