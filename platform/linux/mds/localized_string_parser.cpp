#include "mds/localized_string_parser.h"

#include <syslog.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sstream>

#include "common/file_text.h"
#include "common/key_value_line.h"
#include "mailserver/maillog.h"

namespace MDS {

namespace {

using platform::KeyValueLine;

constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

// The name between the brackets of "[name]"; empty when the line is none of that kind.
std::string SectionName(const std::string& line) {
    if (line.size() < 3 || line.front() != '[' || line.back() != ']') {
        return "";
    }
    return line.substr(1, line.size() - 2);
}

Json::Value ParseText(const std::string& path, const std::string& text) {
    Json::Value sections(Json::objectValue);
    Json::Value* section = nullptr;
    std::istringstream stream(text);
    std::string line;
    for (int number = 1; std::getline(stream, line); ++number) {
        if (number == 1 && line.rfind(kByteOrderMark, 0) == 0) {
            line.erase(0, std::strlen(kByteOrderMark));
        }
        const KeyValueLine parsed = platform::ParseKeyValueLine(line);
        const std::string name = SectionName(parsed.key);
        if (parsed.kind == KeyValueLine::Kind::Other && !name.empty()) {
            section = &sections[name];
            if (section->isNull()) {
                *section = Json::Value(Json::objectValue);
            }
        } else if (parsed.kind == KeyValueLine::Kind::KeyValue && section != nullptr) {
            (*section)[parsed.key] = parsed.value;
        } else if (parsed.kind != KeyValueLine::Kind::Blank) {
            maillog(LOG_WARNING, "%s:%d is no text line, skipped", path.c_str(), number);
        }
    }
    return sections;
}

}  // namespace

Json::Value LocalizedStringParser::ParseTexts(const std::string& path) {
    std::error_code error;
    const std::string file = std::filesystem::is_directory(path, error) ? path + "/strings" : path;
    std::string text;
    switch (platform::ReadText(file, text)) {
        case platform::ReadOutcome::Read:
            return ParseText(file, text);
        case platform::ReadOutcome::Failed:
            maillog(LOG_WARNING, "read %s: %s", file.c_str(), std::strerror(errno));
            break;
        case platform::ReadOutcome::Missing:
            break;
    }
    return Json::Value(Json::objectValue);
}

}  // namespace MDS
