#pragma once

#include <string>

namespace test {

/// The folder of the log stores.
inline const std::string kSpool = "/var/spool/@PostCube-Server/aggr_log/";

/// Removes everything from the folder of the log stores.
void EmptySpool();

}  // namespace test
