#pragma once

#include <gtest/gtest.h>

#include "support/syslog_socket.h"

namespace test {

/// For tests of query methods: an empty spool folder, no texts, no domains, the system log, and UTC
/// as local time.
class QueryTest : public ::testing::Test {
 protected:
    QueryTest();

    SyslogSocket log_;
};

}  // namespace test
