#include "common/charset.h"

#include <unicode/ucnv.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <limits>
#include <memory>

namespace platform {

namespace {

struct CloseConverter {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};

bool FitsIcu(const std::string& text) {
    return text.size() <= static_cast<std::size_t>(std::numeric_limits<int32_t>::max());
}

}  // namespace

bool IsUtf8(const std::string& text) {
    if (!FitsIcu(text)) {
        return false;
    }
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = 0;
    u_strFromUTF8(nullptr, 0, &length, text.data(), static_cast<int32_t>(text.size()), &status);
    // The length alone was asked for, so that a buffer too small is the good end.
    return status == U_BUFFER_OVERFLOW_ERROR || U_SUCCESS(status);
}

bool CharsetToUtf8(const std::string& charset, const std::string& bytes, std::string& utf8) {
    if (!FitsIcu(bytes)) {
        return false;
    }
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, CloseConverter> converter(
        ucnv_open(charset.c_str(), &status));
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &status);
    const icu::UnicodeString text(bytes.data(), static_cast<int32_t>(bytes.size()), converter.get(),
                                  status);
    if (U_FAILURE(status)) {
        return false;
    }
    utf8.clear();
    text.toUTF8String(utf8);
    return true;
}

}  // namespace platform
