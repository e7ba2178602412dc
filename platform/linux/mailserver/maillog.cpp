#include "mailserver/maillog.h"

#include <syslog.h>

#include <cstdarg>

void maillog(int level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vsyslog(LOG_MAIL | LOG_PRI(level), format, arguments);
    va_end(arguments);
}
