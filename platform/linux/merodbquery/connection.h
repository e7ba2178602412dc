#pragma once

#include <merodbquery/session.h>
#include <soci/soci.h>
#include <sqlite3.h>

#include <map>
#include <string>
#include <vector>

namespace merodbquery {

/// What a Session and its copies share: the connection that follows its path. See there for what it
/// promises.
class Connection {
 public:
    explicit Connection(const std::string& path);
    ~Connection() { Close(); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool Usable();
    bool Run(const std::string& statement);
    soci::session& RawSession();
    KeptStatement& Kept(const std::string& text);
    void DropStatement(const std::string& text) { kept_.erase(text); }
    void Close();

 private:
    enum class State {
        kOpen,
        kLost,    // the path could not be reopened; the next use tries again
        kClosed,  // never opened, or closed for good
    };

    struct AttachedSchema {
        std::string name;
        std::string file;
    };

    // Opens the path into `handle_`, which holds SQLite's error text when that fails.
    bool OpenHandle(bool create);
    void FollowFile();
    bool HasMoved() const;
    void Reopen();
    void RetireHandle();
    void CloseFinishedHandles();
    void RememberAttached();
    void AttachRemembered();

    std::string path_;
    bool through_link_ = false;
    State state_ = State::kClosed;
    sqlite3* handle_ = nullptr;
    soci::session session_;
    // By their texts; finalized before their handle is closed.
    std::map<std::string, KeptStatement> kept_;
    std::vector<AttachedSchema> attached_;
    // Handles of moved files that unfinished statements still need.
    std::vector<sqlite3*> retired_;
};

}  // namespace merodbquery
