#pragma once

#include <stdexcept>
#include <string>

namespace serverlog::program {

/// The work can't be done: the program ends with status 1. what() is for a person: what failed, why
/// and what to do about it.
class Failure : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

/// The text of the exception that is being handled, as a person should read it: an exception of the
/// library with its message and detail, any other with its what().
///
/// Call it in a handler only. Does not throw anything but std::bad_alloc.
std::string DescribeException();

/// "<what>: <the system's text for errno>".
std::string DescribeErrno(const std::string& what);

}  // namespace serverlog::program
