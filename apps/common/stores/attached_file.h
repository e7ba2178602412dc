#pragma once

#include <mailserver-log/db/base.h>

#include <string>
#include <utility>

#include "process/failure.h"

namespace serverlog::program {

/// A database file attached to a store for a scope.
class AttachedFile {
 public:
    /// @param store  must outlive this object
    /// @param name   the schema name that the file gets; a constant
    ///
    /// Throws Failure if it can't be attached.
    AttachedFile(db::BaseDB& store, const std::string& path, std::string name)
        : store_(store), name_(std::move(name)) {
        if (!store_.Attach(path, name_)) {
            throw Failure("cannot read " + path + " together with the store; see the mail log");
        }
    }

    /// Detaches it. All statements that read it must be gone.
    ~AttachedFile() { store_.Detach(name_); }
    AttachedFile(const AttachedFile&) = delete;
    AttachedFile& operator=(const AttachedFile&) = delete;

 private:
    db::BaseDB& store_;
    std::string name_;
};

}  // namespace serverlog::program
