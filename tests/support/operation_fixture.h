#pragma once

#include "support/syslog_socket.h"

#include <gtest/gtest.h>
#include <json/value.h>

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace test {

/// One administrator's web API call and what the machine answers while it is logged.
struct OperationCall {
    std::string operation;  ///< the operation's key
    Json::Value params = Json::objectValue;
    /// "<api> <method>" to the "data" that the web API of this machine replies; any other call to
    /// one of these APIs fails.
    std::map<std::string, Json::Value> replies;
    Json::Value body;  ///< of the response
    int error = 0;     ///< of the response
};

/// A statement with the number of its tab.
struct Statement {
    int tab = 0;
    std::string text;

    bool operator==(Statement const& other) const { return tab == other.tab && text == other.text; }
};

std::ostream& operator<<(std::ostream& stream, Statement const& statement);

/// What a call left behind.
struct OperationResult {
    std::vector<std::string> lines;      ///< the admin log lines as they reached the system log
    std::vector<Statement> statements;   ///< the statements of these lines
    std::vector<std::string> errors;     ///< error lines, without their place in the source
    std::vector<std::string> api_calls;  ///< "<api> <method> <version> <user> <params>"
    Json::Value params;                  ///< WEBAPI_PARAM of the last line
};

/// For tests of operations: a system log to read from, the English texts that we ship in their
/// place, the time zone UTC, and a host with the address 192.0.2.1 on its interface eth0.
class OperationTest : public ::testing::Test {
 protected:
    OperationTest();

    /// Logs the call as the web API frame does: construct, PreLog, Log. Who calls is the user
    /// "admin" with the number 1024 from 198.51.100.7. What the logger throws passes on.
    OperationResult Run(OperationCall const& call);

    SyslogSocket syslog_;
};

}  // namespace test
