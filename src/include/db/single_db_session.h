#pragma once

#include <mailserver-log/export.h>
#include <merodbquery/session.h>

#include <map>
#include <string>

namespace serverlog::db {

/// The sessions that a process shares, one for each path. They stay open until the process ends.
///
/// Not safe against use from two threads at once.
class MAILSERVER_LOG_EXPORT SingleDBSession {
 public:
    /// The one object of the process.
    static SingleDBSession& Instance();

    /// The session of a path, opened at the first call. Never null; a session that could not be
    /// opened is kept all the same and shows it by Good(). It stays owned by this object.
    merodbquery::Session* GetSession(const std::string& path);

    SingleDBSession(const SingleDBSession&) = delete;
    SingleDBSession& operator=(const SingleDBSession&) = delete;

 private:
    SingleDBSession() = default;
    ~SingleDBSession();

    std::map<std::string, merodbquery::Session*> sessions_;
};

}  // namespace serverlog::db
