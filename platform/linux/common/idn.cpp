#include "common/idn.h"

#include <idn2.h>

#include <memory>

namespace platform {

namespace {

struct FreeText {
    void operator()(char* text) const { idn2_free(text); }
};
using Text = std::unique_ptr<char, FreeText>;

// libidn2 checks the length of labels and where their hyphens stand. Its own rule for what else may
// stand in a label drops the other characters instead of refusing them.
bool IsHostName(const std::string& ascii) {
    constexpr char kAllowed[] = "abcdefghijklmnopqrstuvwxyz0123456789-.";
    return !ascii.empty() && ascii.find_first_not_of(kAllowed) == std::string::npos &&
           ascii.front() != '.' && ascii.back() != '.' && ascii.find("..") == std::string::npos;
}

}  // namespace

bool CanonicalDomain(const std::string& domain, std::string& canonical) {
    if (domain.find('\0') != std::string::npos) {
        return false;
    }
    char* result = nullptr;
    constexpr int kFlags = IDN2_NFC_INPUT | IDN2_NONTRANSITIONAL;
    if (idn2_to_ascii_8z(domain.c_str(), &result, kFlags) != IDN2_OK) {
        return false;
    }
    const Text ascii(result);
    if (!IsHostName(ascii.get()) || idn2_to_unicode_8z8z(ascii.get(), &result, 0) != IDN2_OK) {
        return false;
    }
    canonical = Text(result).get();
    return true;
}

}  // namespace platform
