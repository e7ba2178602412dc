#include "old_log/sql_text.h"

#include <sqlite3.h>

#include <cstdarg>
#include <memory>
#include <new>

namespace statistic_log {

std::string SqlText(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::unique_ptr<char, void (*)(void*)> text(sqlite3_vmprintf(format, arguments),
                                                      sqlite3_free);
    va_end(arguments);
    if (text == nullptr) {
        throw std::bad_alloc();
    }
    return text.get();
}

}  // namespace statistic_log
