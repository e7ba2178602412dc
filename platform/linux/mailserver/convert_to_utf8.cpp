#include "mailserver/convert_to_utf8.h"

#include <algorithm>

#include "common/charset.h"
#include "common/encoded_words.h"
#include "common/idn.h"

namespace MERO::POSTCUBE_SERVER {

namespace {

// What mail without a named encoding was most often written in; it gives each byte a meaning, so
// that reading it never fails.
constexpr char kFallbackCharset[] = "windows-1252";

bool IsDomainCharacter(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= 'a' && byte <= 'z') || byte == '-' || byte == '.';
}

// The end of the domain that begins at `begin`; a dot at its end belongs to the text around it.
std::size_t DomainEnd(const std::string& text, std::size_t begin) {
    std::size_t end = begin;
    while (end < text.size() && IsDomainCharacter(text[end])) {
        ++end;
    }
    while (end > begin && text[end - 1] == '.') {
        --end;
    }
    return end;
}

bool HasPunycode(std::string domain) {
    std::transform(domain.begin(), domain.end(), domain.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                    : character;
    });
    return domain.rfind("xn--", 0) == 0 || domain.find(".xn--") != std::string::npos;
}

// Turns the domain that begins at `begin` into Unicode where it stands; gives its new end, npos
// when it cannot be decoded.
std::size_t ConvertDomain(std::string& text, std::size_t begin) {
    const std::size_t end = DomainEnd(text, begin);
    std::string domain = text.substr(begin, end - begin);
    if (!HasPunycode(domain)) {
        return end;
    }
    if (!platform::CanonicalDomain(domain, domain)) {
        return std::string::npos;
    }
    text.replace(begin, end - begin, domain);
    return begin + domain.size();
}

bool ConvertDomains(std::string& text) {
    std::size_t at = text.find('@');
    if (at == std::string::npos) {
        return DomainEnd(text, 0) != text.size() || ConvertDomain(text, 0) != std::string::npos;
    }
    while (at != std::string::npos) {
        const std::size_t end = ConvertDomain(text, at + 1);
        if (end == std::string::npos) {
            return false;
        }
        at = text.find('@', end);
    }
    return true;
}

}  // namespace

int ConvertToUTF8(const std::string& in, std::string& out) {
    std::string text = in;
    if (!platform::IsUtf8(text) && !platform::CharsetToUtf8(kFallbackCharset, text, text)) {
        return -1;
    }
    if (!platform::DecodeEncodedWords(text, text) || !ConvertDomains(text)) {
        return -1;
    }
    out = text;
    return 0;
}

}  // namespace MERO::POSTCUBE_SERVER
