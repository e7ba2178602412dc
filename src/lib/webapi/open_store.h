#pragma once

#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/exception/exception.h>

#include <string>

#include "utils/files.h"
#include "utils/merosdk/run_as.h"

namespace serverlog::webapi::internal {

/// What to do with the long-term file before it is attached.
enum class LongTermFile {
    kUpgrade,  ///< bring its schema up to date
    kAsItIs,
};

/// A log store for the length of one call: the store in use together with its long-term file, or
/// any other store alone.
///
/// The session is the process's shared one, so that what is attached here would be there for the
/// next call as well: it is detached in the end.
template <class DB>
class OpenStore {
 public:
    /// @param path  StoreTraits<DB>::kPath, in exactly this spelling, takes the long-term file
    ///              along if there is one
    ///
    /// Throws as Provider::Get does, and Exception<ETag::DB> with BadSession if the long-term file
    /// can't be attached: without it the answer would be wrong.
    OpenStore(const std::string& path, LongTermFile long_term_file)
        : provider_(path), store_(provider_.Get<DB>(true)) {
        constexpr const char* kMainPath = db::StoreTraits<DB>::kMainPath;
        if (path != db::StoreTraits<DB>::kPath || !utils::Exist(kMainPath)) {
            return;
        }
        if (long_term_file == LongTermFile::kUpgrade) {
            db::Provider(kMainPath).Get<DB>(false);
        }
        if (!store_.Attach(kMainPath, kLongTermSchema)) {
            throw make_exception<ETag::DB>(DBError::BadSession,
                                           "path from:" + std::string(kMainPath));
        }
    }

    /// No statement on the store may be left.
    ~OpenStore() { store_.Detach(kLongTermSchema); }

    OpenStore(const OpenStore&) = delete;
    OpenStore& operator=(const OpenStore&) = delete;

    /// Valid as long as this object.
    DB& Get() { return store_; }

 private:
    static constexpr char kLongTermSchema[] = "DB1";

    db::Provider provider_;  // first, since the store may be open through its link
    DB store_;
};

/// Calls `work(store)` as root with the store of `path`, as OpenStore opens it.
///
/// @param reason  names the work in the line that is logged where the process may not become root
///
/// Throws what `work` and OpenStore throw, and Exception<ETag::DB> with BadSession where the
/// process may not become root: an empty answer would be a wrong one.
template <class DB, class Work>
void WithStoreAsRoot(const std::string& path, const std::string& reason, Work work) {
    bool has_run = false;
    utils::RunAsRoot(reason, [&] {
        has_run = true;
        OpenStore<DB> store(path, LongTermFile::kUpgrade);
        work(store.Get());
    });
    if (!has_run) {
        throw make_exception<ETag::DB>(DBError::BadSession, "path from:" + path);
    }
}

}  // namespace serverlog::webapi::internal
