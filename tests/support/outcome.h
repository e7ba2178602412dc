#pragma once

#include <mailserver-log/exception/exception.h>

#include <string>

namespace test {

/// What came of a call: "done", or the whole text of its exception when that is of this kind.
template <serverlog::ETag tag, class Call>
std::string OutcomeOf(const Call& call) {
    try {
        call();
        return "done";
    } catch (const serverlog::Exception<tag>& exception) {
        return exception_str(exception);
    }
}

}  // namespace test
