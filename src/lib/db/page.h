#pragma once

namespace serverlog::db::internal {

/// A page of a result, and how to read it.
struct Page {
    int offset;
    int limit;  ///< -1 means all
    bool descending;
    bool reversed;  ///< whether the rows come last one first
};

/// The same page read from the nearer end of the result.
///
/// A limit of -1 takes part in the arithmetic as a number, so the pages of
/// LisTable::UnionList that are odd come out odd here, on purpose.
///
/// @param total  the number of rows of the result
/// @param page   not reversed
Page FromNearerEnd(unsigned long total, Page page);

}  // namespace serverlog::db::internal
