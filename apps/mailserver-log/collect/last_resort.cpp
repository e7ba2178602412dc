#include "collect/last_resort.h"

#include "process/failure.h"

namespace serverlog::program {

bool KeepInstead(const RejectedLog& rejected_log, const std::vector<Rejection>& rejections,
                 MessageSource& source, std::ostream& talk) {
    try {
        rejected_log.Append(rejections);
    } catch (const Failure&) {
        for (const Rejection& rejection : rejections) {
            talk << rejection.message << '\n';
        }
        return false;
    }
    try {
        source.Stored();
    } catch (const Failure&) {
        // Who waited for the answer is gone, and with him the last copy.
    }
    return true;
}

}  // namespace serverlog::program
