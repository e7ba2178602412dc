#include "support/spool.h"

#include <filesystem>

namespace test {

void EmptySpool() {
    for (const auto& entry : std::filesystem::directory_iterator(kSpool)) {
        std::filesystem::remove_all(entry.path());
    }
}

}  // namespace test
