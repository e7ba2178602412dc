#include "mlibc/unicode.h"

#include <unicode/ucasemap.h>

#include <memory>

#include "common/charset.h"

namespace {

struct CloseCaseMap {
    void operator()(UCaseMap* map) const { ucasemap_close(map); }
};

}  // namespace

int MLIBCUnicodeUTF8StrUpper(const char* in, char* out, int size) {
    if (in == nullptr || out == nullptr || size <= 0 || !platform::IsUtf8(in)) {
        return -1;  // ICU's case mapping would put U+FFFD in the place of broken bytes
    }
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UCaseMap, CloseCaseMap> map(ucasemap_open("", 0, &status));
    if (U_FAILURE(status)) {
        return -1;
    }
    const int32_t length = ucasemap_utf8ToUpper(map.get(), out, size, in, -1, &status);
    if (U_FAILURE(status) || length >= size) {
        return -1;
    }
    return length;
}
