#pragma once

#include <filesystem>
#include <optional>

#include "stores/attached_file.h"
#include "stores/opened_store.h"

namespace serverlog::program {

/// Attaches the store's long-term file, its schema brought up to date, so that the store is read
/// together with it. Empty if there is none yet. Store is a class of stores.h.
///
/// @param store  Store's own file; must outlive the result
///
/// Throws Failure if it can't be opened.
template <class Store>
std::optional<AttachedFile> AttachLongTermFile(OpenedStore<Store>& store) {
    if (!std::filesystem::exists(Store::kMainPath)) {
        return std::nullopt;
    }
    { const OpenedStore<Store> upgraded(Store::kMainPath); }
    return std::optional<AttachedFile>(std::in_place, store.Get(), Store::kMainPath, "DB1");
}

}  // namespace serverlog::program
