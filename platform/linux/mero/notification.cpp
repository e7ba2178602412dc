#include "mero/notification.h"

#include <json/value.h>
#include <mds/localized_string_parser.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <system_error>
#include <vector>

#include "common/json_text.h"
#include "mailserver/maillog.h"
#include "mero/handler_process.h"
#include "mlibc/sz_hash_entries.h"

namespace {

namespace fs = std::filesystem;
using Variables = std::map<std::string, std::string>;

constexpr char kHookFolder[] = "/var/packages/PostCube-Server/etc/notify.d";
constexpr char kLanguage[] = "enu";
constexpr char kSection[] = "notification";
constexpr std::chrono::seconds kTimeLimit{10};
constexpr std::size_t kOutputLimit = 1U << 20;

// In one pass, so that a value which looks like a name stays what it is.
std::string FillIn(const std::string& text, const Variables& variables) {
    std::string filled;
    for (std::size_t place = 0; place < text.size();) {
        const auto starts_here = [&](const Variables::value_type& variable) {
            return !variable.first.empty() &&
                   text.compare(place, variable.first.size(), variable.first) == 0;
        };
        const auto found = std::find_if(variables.begin(), variables.end(), starts_here);
        if (found == variables.end()) {
            filled += text[place++];
            continue;
        }
        filled += found->second;
        place += found->first.size();
    }
    return filled;
}

std::string Message(const std::string& tag, const std::string& texts, const Variables& variables) {
    const Json::Value sections =
        MDS::LocalizedStringParser::ParseTexts((fs::path(texts) / kLanguage).string());
    const Json::Value& section = sections[kSection];
    const std::string title = section[tag + "_title"].asString();
    const std::string body = section[tag + "_body"].asString();
    if (title.empty() && body.empty()) {
        return tag;
    }
    return FillIn(title + (title.empty() || body.empty() ? "" : ": ") + body, variables);
}

// False when the folder can't be read; one that is missing holds no hooks.
bool FindHooks(std::vector<std::string>& hooks) {
    std::error_code error;
    fs::directory_iterator entry(kHookFolder, error);
    if (error == std::errc::no_such_file_or_directory) {
        return true;
    }
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code no_file;
        if (entry->is_regular_file(no_file) && eaccess(entry->path().c_str(), X_OK) == 0) {
            hooks.push_back(entry->path().string());
        }
    }
    if (error) {
        maillog(LOG_WARNING, "read %s: %s", kHookFolder, error.message().c_str());
    }
    std::sort(hooks.begin(), hooks.end());
    return !error;
}

void RunHook(const std::string& hook, const std::string& tag, const std::string& input) {
    platform::HandlerProcess process;
    if (process.Run({hook, tag}, input, kTimeLimit, kOutputLimit) !=
        platform::HandlerProcess::Outcome::Done) {
        maillog(LOG_WARNING, "notification %s, hook %s: %s", tag.c_str(), hook.c_str(),
                process.Reason().c_str());
    }
}

std::string ToJson(const Variables& variables) {
    Json::Value object = Json::objectValue;
    for (const auto& [name, value] : variables) {
        object[name] = value;
    }
    return platform::ToJsonText(object);
}

}  // namespace

int MEROSysNotifySendNotificationCustomized(const char* tag, const char* texts,
                                            const char* /*filter_file*/,
                                            const MLIBCSzHash* variables, int flags) {
    if (tag == nullptr || *tag == '\0' || texts == nullptr || variables == nullptr || flags != 0) {
        return 0;
    }
    maillog(LOG_NOTICE, "notification %s: %s", tag,
            Message(tag, texts, variables->entries).c_str());
    std::vector<std::string> hooks;
    const bool found = FindHooks(hooks);
    const std::string input = ToJson(variables->entries);
    for (const std::string& hook : hooks) {
        RunHook(hook, tag, input);
    }
    return found ? 1 : 0;
}
