#include "input/input.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <memory>

#include "process/failure.h"

namespace serverlog::program {

UniqueDescriptor OpenInput(const std::string& path) {
    UniqueDescriptor file(path == "-" ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                                      : open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file) {
        throw Failure(DescribeErrno("cannot open " + path) +
                      "; check the name and who may read it");
    }
    return file;
}

std::string ReadInput(const std::string& path) {
    const UniqueDescriptor file = OpenInput(path);
    std::string text;
    char buffer[1 << 16];
    for (;;) {
        const ssize_t count = read(file.Get(), buffer, sizeof buffer);
        if (count == 0) {
            return text;
        }
        if (count < 0 && errno != EINTR) {
            throw Failure(DescribeErrno("cannot read " + path));
        }
        text.append(buffer, count > 0 ? static_cast<std::size_t>(count) : 0);
    }
}

std::optional<Json::Value> ParseJson(std::string_view text, std::string& error) {
    Json::CharReaderBuilder builder;
    builder["allowComments"] = false;
    builder["allowTrailingCommas"] = false;
    builder["failIfExtra"] = true;
    builder["rejectDupKeys"] = true;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Json::Value value;
    try {
        if (reader->parse(text.data(), text.data() + text.size(), &value, &error)) {
            return value;
        }
    } catch (const Json::Exception& thrown) {  // nested too deep
        error = thrown.what();
    }
    std::replace(error.begin(), error.end(), '\n', ' ');
    return std::nullopt;
}

Json::Value ParseDocument(std::string_view text, const std::string& what) {
    std::string error;
    std::optional<Json::Value> value = ParseJson(text, error);
    if (!value) {
        throw Failure(what + " is no JSON: " + error);
    }
    return *std::move(value);
}

Json::Value ReadObject(const std::string& path, const std::string& what) {
    const std::string name = path + " (" + what + ")";
    Json::Value object = ParseDocument(ReadInput(path), name);
    if (!object.isObject()) {
        throw Failure(name + " is no JSON object; write {\"name\": value, ...}");
    }
    return object;
}

}  // namespace serverlog::program
