#include "merodbquery/substring_function.h"

#include <exception>
#include <memory>
#include <string_view>

#include "merodbquery/substring_search.h"

namespace merodbquery {
namespace {

constexpr int kWantedArgument = 1;

// The text is read before its length, which is how sqlite3_value_bytes wants it. Null data when
// memory has run out.
std::string_view TextOf(sqlite3_value* value) {
    const unsigned char* text = sqlite3_value_text(value);
    return {reinterpret_cast<const char*>(text),
            static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

void DeleteSearch(void* search) {
    delete static_cast<SubstringSearch*>(search);
}

void Search(sqlite3_context* context, sqlite3_value** arguments) {
    const std::string_view value = TextOf(arguments[0]);
    const std::string_view wanted = TextOf(arguments[kWantedArgument]);
    if (value.data() == nullptr || wanted.data() == nullptr) {
        return sqlite3_result_error_nomem(context);
    }
    auto* search = static_cast<SubstringSearch*>(sqlite3_get_auxdata(context, kWantedArgument));
    std::unique_ptr<SubstringSearch> prepared;
    if (search == nullptr) {
        prepared = std::make_unique<SubstringSearch>(wanted);
        search = prepared.get();
    }
    sqlite3_result_int(context, search->FoundIn(value) ? 1 : 0);
    if (prepared) {
        // Last, since SQLite may delete it at once.
        sqlite3_set_auxdata(context, kWantedArgument, prepared.release(), DeleteSearch);
    }
}

void ContainsIgnoringCase(sqlite3_context* context, int /*count*/, sqlite3_value** arguments) {
    if (sqlite3_value_type(arguments[0]) == SQLITE_NULL ||
        sqlite3_value_type(arguments[kWantedArgument]) == SQLITE_NULL) {
        return sqlite3_result_null(context);
    }
    try {
        Search(context, arguments);
    } catch (const std::exception& error) {
        sqlite3_result_error(context, error.what(), -1);
    }
}

}  // namespace

bool RegisterSubstringFunction(sqlite3* handle) {
    constexpr int kArguments = 2;
    return sqlite3_create_function_v2(handle, kSubstringFunction, kArguments,
                                      SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                                      ContainsIgnoringCase, nullptr, nullptr, nullptr) == SQLITE_OK;
}

}  // namespace merodbquery
