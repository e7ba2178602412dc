#pragma once

namespace serverlog::program {

/// What a reader came back with.
enum class Arrival {
    kLine,     ///< a line
    kNothing,  ///< nothing for now; more may come
    kEnd,      ///< nothing, and nothing will come any more
};

}  // namespace serverlog::program
