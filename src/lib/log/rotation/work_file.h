#pragma once

#include <string>

namespace serverlog::log::rotation {

/// The copy of a store's long-term file on which a rotation works, and which then takes the place
/// of that file. Whoever uses it holds the store's operation lock.
///
/// All failures but those told are Exception<ETag::Rotation> with RotateDbFail.
class WorkFile {
 public:
    explicit WorkFile(std::string path) : path_(std::move(path)) {}

    /// Removes what a rotation that failed has left, with all files beside it: SQLite would take a
    /// journal for that of the next work file.
    ///
    /// Throws Exception<ETag::Rotation> with PrepareEnvFail.
    void RemoveLeftOver() const;

    /// Begins the work file.
    ///
    /// @param long_term  the long-term file; must exist
    ///
    /// Waits up to 60 s for readers of the long-term file to let go of an old picture of it. Throws
    /// also as utils::CopyFile does.
    void CopyFrom(const std::string& long_term) const;

    /// Puts the finished work file in the place of the one it was copied from, for good: also a
    /// loss of power can't bring the old one back. Sessions on the work file may stay open and must
    /// not be used before there is a work file again, which they would make.
    ///
    /// Throws also as utils::Rename does.
    void TakePlaceOf(const std::string& long_term) const;

 private:
    std::string path_;
};

}  // namespace serverlog::log::rotation
