// A caller of the installed library: sees its headers and its exports and nothing else of it.

#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/exception/exception.h>
#include <mailserver-log/log/adminlog/logger/logger.h>

#include <iostream>

int main() {
    serverlog::log::adminlog::Logger logger("Webapi_Queue_DeleteAll", Json::objectValue);
    logger.PreLog();
    try {
        // The test has put a folder there, which SQLite cannot open.
        serverlog::db::Provider provider("/var/spool/@PostCube-Server/aggr_log/admin_log.db");
        provider.Get<serverlog::db::AdminLogDB>(false);
    } catch (const serverlog::Exception<serverlog::ETag::DB>& error) {
        std::cout << serverlog::exception_str(error) << '\n';
        return 0;
    }
    std::cerr << "the folder was opened as a store\n";
    return 1;
}
