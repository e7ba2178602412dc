#pragma once

#include <string>

namespace test {

/// A file system in memory with little room, in the place of a folder for as long as this object
/// lives. It is empty at first.
class SmallVolume {
 public:
    /// @param folder  must exist
    explicit SmallVolume(const std::string& folder);
    ~SmallVolume();
    SmallVolume(const SmallVolume&) = delete;
    SmallVolume& operator=(const SmallVolume&) = delete;

    /// False where this process may not mount.
    bool Mounted() const { return mounted_; }

    /// Leaves so much room, in bytes; negative for plenty. Throws std::runtime_error where it
    /// can't.
    void Limit(long room) const;

 private:
    bool Mount(unsigned long flags, long size) const;

    std::string folder_;
    bool mounted_;
};

}  // namespace test

/// Skips a test that needs a SmallVolume that is not Mounted, and says so.
#define SKIP_UNLESS_MOUNTED(volume)                                                      \
    if (!(volume).Mounted()) {                                                           \
        GTEST_SKIP() << "needs the right to mount: run it in a sandbox with namespaces"; \
    }                                                                                    \
    static_assert(true)
