#pragma once

#include <merodbquery/session.h>

#include <optional>
#include <string>

namespace serverlog::log::archive {

/// Keeps writers out of a store for as long as its files are copied, so that the copy is whole.
/// Writers wait; readers do not notice.
///
/// A file that SQLite can't read is left alone: it goes to the archive as it is.
class StillStore {
 public:
    /// Waits up to 60 s for writers.
    ///
    /// @param path  the store's file; must exist
    ///
    /// Throws Exception<ETag::FileSystem> with CopyFileFail, as the copy would, when one of them is
    /// still at it.
    explicit StillStore(const std::string& path);
    ~StillStore();
    StillStore(const StillStore&) = delete;
    StillStore& operator=(const StillStore&) = delete;

 private:
    std::optional<merodbquery::Session> session_;
};

}  // namespace serverlog::log::archive
