#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/db/single_db_session.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/exception/exception.h>
#include <merodbquery/session.h>
#include <unistd.h>

#include <boost/filesystem/operations.hpp>
#include <cerrno>
#include <cstring>

#include "utils/files.h"
#include "utils/strings.h"

namespace serverlog::db {

namespace {

constexpr char kLinkPrefix[] = "/tmp/postcube-server-log";
constexpr char kLinkSuffixModel[] = "-%%%%%-%%%%%-%%%%%-%%%%%.tmp";

}  // namespace

Provider::Provider(const std::string& path) : path_(path), path_to_open_(path) {
    const std::string spool = utils::RealPath(kSpoolFolder);
    const std::string parent = utils::RealPath(utils::FileParentFolder(path));
    // By the letters alone: a folder beside the spool folder whose name goes on where that of the
    // spool folder ends is taken for internal too.
    internal_ = utils::Startswith(parent, spool);
}

Provider::~Provider() {
    // An external store may itself lie in /tmp under such a name, and it must stay.
    if (internal_ || path_to_open_ == path_ || !utils::Startswith(path_to_open_, kLinkPrefix)) {
        return;
    }
    if (unlink(path_to_open_.c_str()) == -1) {
        SERVERLOG_ERROR_LINE("unlink path fail: %s", path_to_open_.c_str());
    }
}

template <class DB>
DB Provider::Get(bool shared) {
    const bool exists = utils::Exist(path_);
    if (!exists && !internal_) {
        throw make_exception<ETag::FileSystem>(FileSystemError::NotFound,
                                               "external path not exist:" + path_);
    }
    merodbquery::Session session = OpenSession(shared);
    if (!session.Good()) {
        throw make_exception<ETag::DB>(DBError::BadSession, "path from:" + path_);
    }
    DB store(session);
    if (!internal_) {
        return store;
    }
    if (exists && !store.Upgrade()) {
        throw make_exception<ETag::DB>(DBError::UpgradeFail, "path from:" + path_);
    }
    if (!exists && !store.Create()) {
        throw make_exception<ETag::DB>(DBError::CreateFail, "path from:" + path_);
    }
    return store;
}

merodbquery::Session Provider::OpenSession(bool shared) {
    if (!internal_) {
        CreateExternalTmpLn(std::string(kLinkPrefix) + kLinkSuffixModel);
        return merodbquery::Session::SQLite(path_to_open_);
    }
    return shared ? *SingleDBSession::Instance().GetSession(path_to_open_)
                  : merodbquery::Session::SQLite(path_to_open_);
}

void Provider::CreateExternalTmpLn(const std::string& model) {
    const std::string name = utils::AvailableTempFilePath(model);
    // A relative path would start at the link's folder.
    const std::string target = boost::filesystem::absolute(path_).string();
    if (symlink(target.c_str(), name.c_str()) == -1) {
        throw make_exception<ETag::DB>(DBError::SymlinkExternalPathFail,
                                       std::string(": ") + std::strerror(errno));
    }
    path_to_open_ = name;
}

template AdminLogDB Provider::Get<AdminLogDB>(bool);
template MailLogDB Provider::Get<MailLogDB>(bool);
template SecurityLogDB Provider::Get<SecurityLogDB>(bool);

}  // namespace serverlog::db
