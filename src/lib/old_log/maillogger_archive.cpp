#include <mailserver-log/old_log/maillogger.h>
#include <mailserver-log/utils/error_line.h>
#include <mailserver/file.h>
#include <mailserver/mail_conf.h>
#include <mero/mail_node_cluster.h>
#include <mero/notification.h>
#include <mlibc/sz_hash.h>

#include <string>

#include "utils/merosdk/critical_section.h"

using MERO::POSTCUBE_SERVER::MEROMailNodeCluster;
using MERO::POSTCUBE_SERVER::Role;

namespace {

constexpr char kTexts[] = "/var/packages/PostCube-Server/target/app/texts/";
constexpr char kFilter[] = "/var/packages/PostCube-Server/target/etc/notify.filter";
constexpr int kVariables = 1024;

/// The variables of a notification.
class Variables {
 public:
    Variables() : hash_(MLIBCSzHashAlloc(kVariables)) {}
    ~Variables() { MLIBCSzHashFree(hash_); }
    Variables(const Variables&) = delete;
    Variables& operator=(const Variables&) = delete;

    explicit operator bool() const { return hash_ != nullptr; }
    const MLIBCSzHash* Get() const { return hash_; }
    void Set(const char* name, const std::string& value) {
        MLIBCSzHashSetValue(&hash_, name, value.c_str());
    }

 private:
    MLIBCSzHash* hash_;  // setting a value may replace it
};

bool FolderExists(const std::string& path) {
    const serverlog::utils::CriticalSection section(__FILE__, __LINE__);
    return pcsDirectoryExist(path);
}

void DisableArchive(Variables& variables, const std::string& destination) {
    variables.Set("%SHARED_FOLDER%", destination);
    // Only a negative result is a failure here, on purpose, though the platform gives 0 for one: a
    // notification that did not go out is told by what sends it.
    if (MEROSysNotifySendNotificationCustomized("POSTCUBE_SERVER_ARCHIVE_SHARE_REMOVE", kTexts,
                                                kFilter, variables.Get(), 0) < 0) {
        SERVERLOG_ERROR_LINE("send notify fail");
    }
    if (mailConfSet("archive_enable_schedule", "no", true, 0) != 0) {
        SERVERLOG_ERROR_LINE("Failed to mailConfSet enable archive");
    }
}

}  // namespace

// The archive step looks after its folder too, and says it in other words, on purpose: this one
// runs in every cycle and so finds a folder that is gone long before the next archive is due.
void MailLogger::checkArchiveSetting() {
    const MEROMailNodeCluster cluster;
    Role role = {};
    if (!cluster.isClusterHealth(false)) {
        SERVERLOG_ERROR_LINE("cluster is not health");
        return;
    }
    Variables variables;
    if (!variables) {
        return;
    }
    std::string enabled;
    if (mailConfGet("archive_enable_schedule", enabled) < 0) {
        SERVERLOG_ERROR_LINE("Failed to mailConfGet enable archive");
        return;
    }
    if (enabled != "yes") {
        return;
    }
    std::string destination;
    if (mailConfGet("archive_destination", destination) < 0) {
        SERVERLOG_ERROR_LINE("Failed to mailConfGet archive destination");
        return;
    }
    const bool exists = !destination.empty() && FolderExists(destination);
    if (!cluster.nodeRoleGet(role)) {
        SERVERLOG_ERROR_LINE("Can not get node role");
        return;
    }
    if (cluster.isClusterHealth(false) && !exists && role.may_act != 0) {
        DisableArchive(variables, destination);
    }
}
