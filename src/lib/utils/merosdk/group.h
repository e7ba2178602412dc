#pragma once

#include <string>

namespace serverlog::utils {

/// A group of the platform by its id. The platform is asked when the first name is wanted, and its
/// record is kept then.
///
/// An object is used by one thread.
class ZsmGroup {
 public:
    explicit ZsmGroup(unsigned int gid);
    ~ZsmGroup();
    ZsmGroup(const ZsmGroup&) = delete;
    ZsmGroup& operator=(const ZsmGroup&) = delete;

    /// The group's name as the platform keeps it.
    ///
    /// @throws Exception<ETag::SDK> with GroupNameFail when there is no such group
    std::string GetGroupName();

    /// The group's name as its users know it: without the marks of a domain or a directory.
    ///
    /// @throws Exception<ETag::SDK> with GroupNameFail as GetGroupName does, and when the platform
    ///         knows no such name
    std::string GetGroupRealName();

 private:
    unsigned int gid_;
};

}  // namespace serverlog::utils
