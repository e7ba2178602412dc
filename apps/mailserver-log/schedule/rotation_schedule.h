#pragma once

#include <mailserver/round_time.h>

#include <cstdint>
#include <ctime>

#include "stores/store_facts.h"

namespace serverlog::program {

/// When a store is rotated. The library only rotates; it never decides.
struct RotationSchedule {
    /// Rows older than the period that today lies in are due: a day, a week or a month.
    CountInterval period = CountInterval::Day;
    /// In bytes: rows of past days are due as well when the store has grown that far; 0 for never.
    std::uint64_t size = 0;
};

/// Reads the settings `enable_rotate_period`, `log_rotate_period` and `log_rotate_size`. Throws
/// Failure when they cannot be read or make no sense.
RotationSchedule ReadRotationSchedule();

/// Whether a store is to be rotated now.
///
/// @param facts  the store's
/// @param now    seconds since the epoch
/// @return false also for a store without rows of past days and for one that is missing; true also
///         for one that cannot be read, as its rotation tells why
bool IsRotationDue(const RotationSchedule& schedule, const StoreFacts& facts, std::time_t now);

}  // namespace serverlog::program
