#include "mlibc/error.h"

#include "common/last_error.h"

namespace {

struct LastError {
    int code = 0;
    const char* file = "";
    int line = 0;
};

thread_local LastError last_error;

}  // namespace

void platform::SetLastError(int code, const char* file, int line) {
    last_error = {code, file, line};
}

int MLIBCErrGet() {
    return last_error.code;
}

const char* MLIBCErrorGetFile() {
    return last_error.file;
}

int MLIBCErrorGetLine() {
    return last_error.line;
}
