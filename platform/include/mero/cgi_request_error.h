#pragma once

#include <stdexcept>
#include <string>

namespace MERO {

/// A CGI request that cannot be used. what() is a sentence for the log.
class CgiRequestError : public std::runtime_error {
 public:
    /// @param status  the HTTP status (RFC 9110) that tells the client
    CgiRequestError(int status, const std::string& text)
        : std::runtime_error(text), status_(status) {}

    /// 400 for a body that is cut short or no JSON object, and for a length that is no number; 403
    /// for a parameter that the check refused; 413 and 414 for a body and a query string beyond
    /// their limits; 415 for a body of another kind.
    int status() const noexcept { return status_; }

 private:
    int status_;
};

}  // namespace MERO
