#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace serverlog::program {

/// A key of SipHash.
using SipKey = std::array<std::uint64_t, 2>;

/// SipHash-2-4 (J.-P. Aumasson, D. J. Bernstein, "SipHash: a fast short-input PRF"): who does not
/// know the key can't make texts that have the same hash.
std::uint64_t SipHash(const SipKey& key, std::string_view text);

}  // namespace serverlog::program
