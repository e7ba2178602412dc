#include "permission.h"

#include <grp.h>
#include <pwd.h>

#include <algorithm>
#include <vector>

#include "api_error.h"
#include "request_token.h"

namespace serverlog::endpoint {

namespace {

std::vector<gid_t> GroupsOf(const std::string& user, gid_t primary) {
    std::vector<gid_t> groups(64);
    int count = static_cast<int>(groups.size());
    while (getgrouplist(user.c_str(), primary, groups.data(), &count) < 0) {
        // Some implementations do not tell how many there are.
        count = std::max(count, static_cast<int>(groups.size()) * 2);
        groups.resize(static_cast<std::size_t>(count));
    }
    groups.resize(static_cast<std::size_t>(count));
    return groups;
}

bool HasMember(const group& group, const std::string& user) {
    char** member = group.gr_mem;
    while (*member != nullptr && *member != user) {
        ++member;
    }
    return *member != nullptr;
}

bool IsAdministrator(const std::string& user) {
    const passwd* const account = getpwnam(user.c_str());
    const group* const administrators = getgrnam(kAdministrators);
    if (account == nullptr || administrators == nullptr) {
        return false;
    }
    // The group's own list first. All groups of a user are asked of every source of accounts that
    // the system has, which takes a tenth of a request's time; but where the members of a group are
    // not listed, such as in a large directory, only that tells.
    if (HasMember(*administrators, user)) {
        return true;
    }
    const gid_t wanted = administrators->gr_gid;
    const std::vector<gid_t> groups = GroupsOf(user, account->pw_gid);
    return std::find(groups.begin(), groups.end(), wanted) != groups.end();
}

}  // namespace

void RequireAdministrator(const std::string& user) {
    if (user.empty()) {
        throw ApiError(kNoPermission, HttpStatus::kUnauthorized,
                       "the web server has not authenticated the caller");
    }
    if (!IsAdministrator(user)) {
        throw ApiError(kNoPermission, HttpStatus::kForbidden,
                       "the user " + user + " is not in the group " + kAdministrators);
    }
}

void RequireIntent(const MERO::APIRequest& request) {
    if (request.GetEnv("REQUEST_METHOD", "").asString() != "POST") {
        throw ApiError(kNoPermission, HttpStatus::kMethodNotAllowed, "a change takes a POST");
    }
    const std::string token = request.GetEnv("HTTP_X_MERO_TOKEN", "").asString();
    if (!RequestToken(request.GetLoginUID()).Equals(token)) {
        throw ApiError(kNoPermission, HttpStatus::kForbidden,
                       "a change takes the caller's token in the header X-Mero-Token");
    }
}

}  // namespace serverlog::endpoint
