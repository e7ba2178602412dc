#include "endpoint.h"
#include "process/sqlite_mode.h"

int main() {
    serverlog::program::PrepareSqlite();
    return serverlog::endpoint::Serve();
}
