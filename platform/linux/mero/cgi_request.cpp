#include "mero/cgi_request.h"

#include <pwd.h>
#include <strings.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <system_error>

#include "common/form_text.h"
#include "common/json_text.h"
#include "common/name_service.h"
#include "mero/cgi_request_error.h"

namespace MERO {

namespace {

using Texts = APIRequest::Texts;

// The number of "nobody", which the kernel shows for users that it has no number for.
constexpr unsigned kNobody = 65534;

std::string Variable(const Texts& environment, const char* name) {
    const auto found = environment.find(name);
    return found == environment.end() ? std::string() : found->second;
}

unsigned UserNumber(const std::string& name) {
    unsigned number = kNobody;
    platform::LookUp(getpwnam_r, name.c_str(), [&](const passwd& user) { number = user.pw_uid; });
    return number;
}

// CONTENT_LENGTH; none of it means no body (RFC 3875, section 4.1.2).
std::size_t BodyLength(const Texts& environment) {
    const std::string text = Variable(environment, "CONTENT_LENGTH");
    if (text.empty()) {
        return 0;
    }
    std::size_t length = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, length);
    if (rest != end || error == std::errc::invalid_argument) {
        throw CgiRequestError(400, "The length of the body is no number: " + text);
    }
    if (error == std::errc::result_out_of_range || length > kCgiBodyLimit) {
        throw CgiRequestError(413, "The body is longer than a request may be: " + text + " bytes");
    }
    return length;
}

std::string ReadBody(int descriptor, std::size_t length) {
    std::string body(length, '\0');
    std::size_t size = 0;
    while (size < length) {
        const ssize_t count = read(descriptor, body.data() + size, length - size);
        if (count == 0 || (count < 0 && errno != EINTR)) {
            const char* reason = count == 0 ? "it is shorter than announced" : std::strerror(errno);
            throw CgiRequestError(400, std::string("Cannot read the body: ") + reason);
        }
        size += count < 0 ? 0 : static_cast<std::size_t>(count);
    }
    return body;
}

// The media type without its parameters (RFC 9110, section 8.3.1).
bool HasMediaType(const Texts& environment, const char* type) {
    const std::string text = Variable(environment, "CONTENT_TYPE");
    const std::string essence = text.substr(0, text.find_first_of("; \t"));
    return strcasecmp(essence.c_str(), type) == 0;
}

Json::Value ParseObject(const std::string& body) {
    Json::Value params;
    if (!platform::ParseJsonText(body, params) || !params.isObject()) {
        throw CgiRequestError(400, "The body is no JSON object");
    }
    return params;
}

void CheckParams(const Json::Value& params, const ParamCheck& check) {
    for (const std::string& key : params.getMemberNames()) {
        if (!check(key, params[key])) {
            throw CgiRequestError(403, "The parameter \"" + key + "\" may not have this value");
        }
    }
}

}  // namespace

APIRequest::Texts CgiEnvironment() {
    Texts environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const std::size_t name_end = text.find('=');
        if (name_end != std::string::npos) {
            environment.emplace(text.substr(0, name_end), text.substr(name_end + 1));
        }
    }
    return environment;
}

APIRequest ReadCgiRequest(const Texts& environment, int body, const ParamCheck& check) {
    const std::string query = Variable(environment, "QUERY_STRING");
    if (query.size() > kCgiQueryLimit) {
        throw CgiRequestError(414, "The query string is longer than a request may have");
    }
    Json::Value params(Json::objectValue);
    Texts form_params;
    platform::ReadFormText(query, form_params);
    const std::size_t length =
        Variable(environment, "REQUEST_METHOD") == "POST" ? BodyLength(environment) : 0;
    if (length != 0) {
        if (HasMediaType(environment, "application/json")) {
            params = ParseObject(ReadBody(body, length));
        } else if (HasMediaType(environment, "application/x-www-form-urlencoded")) {
            platform::ReadFormText(ReadBody(body, length), form_params);
        } else {
            throw CgiRequestError(415, "The body is neither a form nor JSON");
        }
    }
    const std::string user = Variable(environment, "REMOTE_USER");
    APIRequest request(user, UserNumber(user), Variable(environment, "REMOTE_ADDR"), params,
                       form_params, environment);
    if (check) {
        CheckParams(request.GetParams(), check);
    }
    return request;
}

}  // namespace MERO
