#pragma once

#include <mailserver-log/export.h>
#include <mailserver-log/record/base_record.h>
#include <merodbquery/updatable.h>

#include <string>
#include <vector>

namespace serverlog::record {

/// A record of which stored rows can be changed. No log record is one: log rows are only added and
/// removed.
class MAILSERVER_LOG_EXPORT UpdatableRecord : public BaseRecord, public merodbquery::Updatable {
 public:
    /// The names of the columns that an update sets.
    virtual const std::vector<std::string>& GetUpdateFields() const = 0;
};

}  // namespace serverlog::record
