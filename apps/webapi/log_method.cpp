#include "log_method.h"

#include <mailserver-log/db/store_traits.h>
#include <stdlib.h>

#include <memory>
#include <stdexcept>

#include "api_error.h"
#include "stores/read_only_database.h"

namespace serverlog::endpoint {

namespace {

bool HasTable(const std::string& path, const std::string& table) {
    try {
        const program::ReadOnlyDatabase database(path);
        for (const std::string& name :
             database.Texts("SELECT name FROM sqlite_schema WHERE type = 'table'")) {
            if (name == table) {
                return true;
            }
        }
    } catch (const std::runtime_error&) {
        return false;  // no database at all
    }
    return false;
}

// The stores in use need not be there yet.
bool IsInUse(const std::string& path) {
    return path == db::StoreTraits<db::AdminLogDB>::kPath ||
           path == db::StoreTraits<db::MailLogDB>::kPath ||
           path == db::StoreTraits<db::SecurityLogDB>::kPath;
}

}  // namespace

void RequireStore(const MERO::APIRequest& request, const std::string& table) {
    const auto path = request.GetAndCheckString("db_path", MERO::PARAM_OPTIONAL, nullptr);
    if (path.IsInvalid()) {
        return;  // the method takes the store in use
    }
    const std::unique_ptr<char, void (*)(void*)> real(realpath(path.Get().c_str(), nullptr), free);
    const bool is_missing_store = real == nullptr && IsInUse(path.Get());
    if (!is_missing_store && (real == nullptr || !HasTable(real.get(), table))) {
        throw ApiError(kNoPermission, HttpStatus::kForbidden,
                       path.Get() + " is no store of this log");
    }
}

}  // namespace serverlog::endpoint
