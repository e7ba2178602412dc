#pragma once

#include <memory>
#include <string>

struct MEROGroup;

namespace serverlog::utils {

/// A group of the platform by its id. The platform is asked when the first name is wanted, and its
/// record is kept then.
///
/// An object is used by one thread.
class ZsmGroup {
 public:
    explicit ZsmGroup(unsigned int gid);

    /// The group's name as the platform keeps it.
    ///
    /// @throws Exception<ETag::SDK> with GroupNameFail when there is no such group
    std::string GetGroupName();

    /// The group's name as the group database spells it, for display.
    ///
    /// @throws Exception<ETag::SDK> with GroupNameFail as GetGroupName does, and when the platform
    ///         does not know the name
    std::string GetGroupRealName();

 private:
    struct RecordFree {
        void operator()(MEROGroup* record) const;
    };

    unsigned int gid_;
    std::unique_ptr<MEROGroup, RecordFree> record_;  ///< null until first used
};

}  // namespace serverlog::utils
