#pragma once

#include <string>

namespace test {

/// An admin log line as the logger writes it, with raw line feed and all; `statement` and `params`
/// stand in it as given, so quotes and backslashes in them have to be escaped already.
inline std::string AdminLine(const std::string& statement, const std::string& params = "{}",
                             const std::string& date = "1790000000") {
    return R"({"id":"MEROPostCube-Server","type":"admin_log","TAB_TYPE":20,"STATEMENT":")" +
           statement + R"(","USER":"admin","UID":1024,"EXEC_TIME":)" + date +
           R"x(,"IP":"192.0.2.7","SERVER":"(192.0.2.1)","WEBAPI_PARAM":")x" + params + "\n\"}";
}

/// The same as rsyslog hands it on: control characters escaped, a line feed at the end.
inline std::string EscapedAdminLine(const std::string& statement,
                                    const std::string& params = "{}") {
    std::string line = AdminLine(statement, params);
    line.replace(line.rfind('\n'), 1, "#012");
    return line + '\n';
}

}  // namespace test
