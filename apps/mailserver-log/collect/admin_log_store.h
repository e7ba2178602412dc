#pragma once

#include <mailserver-log/db/adminlog/admin_log_db.h>
#include <mailserver-log/record/adminlog/admin_log.h>

#include <optional>
#include <string>
#include <vector>

namespace serverlog::program {

/// The admin log store as the collector writes to it: opened when it is first needed, and opened
/// again when its file went away.
class AdminLogStore {
 public:
    /// Inserts all records or none; none if it throws.
    ///
    /// Throws what opening throws (see db::Provider), soci::soci_error if the store is busy or
    /// can't be written, Failure if it does not take a row. Call it again then.
    void Insert(const std::vector<record::AdminLog>& records);

 private:
    void Open();
    void InsertWhole(const std::vector<record::AdminLog>& records);

    std::optional<db::AdminLogDB> store_;
};

}  // namespace serverlog::program
