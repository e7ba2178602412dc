#pragma once

#include <string>

namespace serverlog::endpoint {

/// The secret of a user that a request has to bring along when it is to change something. A page of
/// another site cannot read it, and so cannot make the browser of a user who is logged in change
/// anything.
///
/// It is random, is kept in a file that root alone can read, and lasts until the machine starts
/// again.
class RequestToken {
 public:
    /// Reads the user's token; makes one if there is none yet.
    ///
    /// @param uid  number of the user's login
    ///
    /// Throws std::system_error if it can be neither read nor made.
    explicit RequestToken(unsigned int uid);

    /// The token, in lower case hexadecimal digits.
    const std::string& Text() const { return text_; }

    /// Whether `text` is the token. Takes the same time however much of it is right.
    bool Equals(const std::string& text) const;

 private:
    std::string text_;
};

}  // namespace serverlog::endpoint
