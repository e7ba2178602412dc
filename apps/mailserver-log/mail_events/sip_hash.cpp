#include "mail_events/sip_hash.h"

#include <cstddef>

namespace serverlog::program {

namespace {

constexpr std::size_t kBlock = 8;

std::uint64_t RotateLeft(std::uint64_t value, unsigned bits) {
    return (value << bits) | (value >> (64 - bits));
}

struct State {
    std::uint64_t v0, v1, v2, v3;

    void Round() {
        v0 += v1;
        v1 = RotateLeft(v1, 13) ^ v0;
        v0 = RotateLeft(v0, 32);
        v2 += v3;
        v3 = RotateLeft(v3, 16) ^ v2;
        v0 += v3;
        v3 = RotateLeft(v3, 21) ^ v0;
        v2 += v1;
        v1 = RotateLeft(v1, 17) ^ v2;
        v2 = RotateLeft(v2, 32);
    }

    void Take(std::uint64_t block) {
        v3 ^= block;
        Round();
        Round();
        v0 ^= block;
    }
};

std::uint64_t LittleEndian(std::string_view bytes) {
    std::uint64_t value = 0;
    for (std::size_t i = bytes.size(); i-- > 0;) {
        value = (value << 8) | static_cast<unsigned char>(bytes[i]);
    }
    return value;
}

}  // namespace

std::uint64_t SipHash(const SipKey& key, std::string_view text) {
    State state = {key[0] ^ 0x736f6d6570736575, key[1] ^ 0x646f72616e646f6d,
                   key[0] ^ 0x6c7967656e657261, key[1] ^ 0x7465646279746573};
    const std::uint64_t length = text.size();
    while (text.size() >= kBlock) {
        state.Take(LittleEndian(text.substr(0, kBlock)));
        text.remove_prefix(kBlock);
    }
    state.Take((length << 56) | LittleEndian(text));
    state.v2 ^= 0xff;
    for (int round = 0; round < 4; ++round) {
        state.Round();
    }
    return state.v0 ^ state.v1 ^ state.v2 ^ state.v3;
}

}  // namespace serverlog::program
