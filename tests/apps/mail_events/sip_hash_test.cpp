#include "mail_events/sip_hash.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>

namespace serverlog::program {
namespace {

// The vectors of the authors' reference: key 00 01 … 0f, texts 00 01 02 … of some lengths.
TEST(SipHash, GivesWhatItsAuthorsGive) {
    const SipKey key = {0x0706050403020100, 0x0f0e0d0c0b0a0908};
    std::string text(15, '\0');
    std::iota(text.begin(), text.end(), '\0');
    EXPECT_EQ(SipHash(key, ""), 0x726fdb47dd0e0e31U);
    EXPECT_EQ(SipHash(key, text.substr(0, 8)), 0x93f5f5799a932462U);
    EXPECT_EQ(SipHash(key, text), 0xa129ca6149be45e5U);
}

}  // namespace
}  // namespace serverlog::program
