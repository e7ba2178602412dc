#include "mail_events/counts.h"

#include "mail_events/row_text.h"

namespace serverlog::program {

const std::string& Counts::Skip(std::string_view program) {
    ++skipped;
    auto known = skipped_by_program.find(program);
    if (known == skipped_by_program.end()) {
        const bool is_full = skipped_by_program.size() >= kMostPrograms;
        known = skipped_by_program
                    .try_emplace(program.empty() ? kNoProgram
                                 : is_full       ? kOtherPrograms
                                                 : RowText(program))
                    .first;
    }
    ++known->second;
    return known->first;
}

}  // namespace serverlog::program
