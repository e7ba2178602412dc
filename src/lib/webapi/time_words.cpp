#include "webapi/time_words.h"

#include "utils/strings.h"
#include "utils/time.h"

namespace serverlog::webapi::internal {

TimeWords::TimeWords(long seconds) {
    const auto words = utils::Split(utils::ConvertToTimeString(seconds), ' ');
    date = words.at(0);
    time = words.at(1);
}

}  // namespace serverlog::webapi::internal
