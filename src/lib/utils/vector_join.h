#pragma once

#include <iterator>
#include <utility>
#include <vector>

namespace serverlog::utils {

/// The elements of `a` and then those of `b`. Lists of labels and columns are built with it.
///
/// Name it with a using-declaration where the elements' type is none of this namespace.
template <class T>
std::vector<T> operator+(std::vector<T> a, std::vector<T> b) {
    a.reserve(a.size() + b.size());
    a.insert(a.end(), std::make_move_iterator(b.begin()), std::make_move_iterator(b.end()));
    return a;
}

}  // namespace serverlog::utils
