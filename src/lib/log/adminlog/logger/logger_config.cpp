#include <mailserver-log/log/adminlog/logger/logger_config.h>
#include <mailserver-log/log/adminlog/operations.h>

#include "utils/strings.h"

#include <map>

namespace serverlog::log::adminlog {

LoggerConfig GetConfig(std::string const& name) {
    static std::map<std::string, std::function<LoggerConfig()>> const factories = {
#define MAILSERVER_LOG_OPERATION(key, info, diff, translate, ...) {#key, Get_##key##_Config},
#include <mailserver-log/log/adminlog/operations/table.def>
#undef MAILSERVER_LOG_OPERATION
    };
    auto const found = factories.find(utils::RemoveTail(name, "_v"));
    if (found == factories.end()) {
        return LoggerConfig("", {}, nullptr, nullptr, nullptr);
    }
    return found->second();
}

}  // namespace serverlog::log::adminlog
