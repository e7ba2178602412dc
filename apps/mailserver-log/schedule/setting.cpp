#include "schedule/setting.h"

#include <mailserver/mail_conf.h>

#include <charconv>

#include "output/display_text.h"

namespace serverlog::program {

std::string ReadSetting(const std::string& key) {
    std::string value;
    if (mailConfGet(key, value) < 0) {
        throw Failure(
            "the settings cannot be read; mend /var/packages/PostCube-Server/etc/mailserver.conf: "
            "each line is key=\"value\", and the mail log names the bad one");
    }
    return value;
}

long long ReadNumberSetting(const std::string& key, long long least, long long most,
                            long long missing) {
    const std::string value = ReadSetting(key);
    if (value.empty()) {
        return missing;
    }
    long long number = 0;
    const char* const end = value.data() + value.size();
    const auto [rest, error] = std::from_chars(value.data(), end, number);
    if (error != std::errc() || rest != end || number < least || number > most) {
        throw WrongSetting(
            key, value, "a number from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return number;
}

Failure WrongSetting(const std::string& key, const std::string& value, const std::string& wanted) {
    return Failure("the setting " + key + " is \"" + VisibleText(value) + "\"; it has to be " +
                   wanted);
}

}  // namespace serverlog::program
