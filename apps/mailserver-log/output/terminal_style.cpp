#include "output/terminal_style.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>

namespace serverlog::program {

TableWriter::Style TerminalStyle() {
    TableWriter::Style style;
    winsize size = {};
    if (isatty(STDOUT_FILENO) == 0) {
        return style;
    }
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0) {
        style.width = size.ws_col;
    }
    const char* no_color = std::getenv("NO_COLOR");
    style.with_colours = no_color == nullptr || *no_color == '\0';  // any value that is not empty
    return style;
}

}  // namespace serverlog::program
