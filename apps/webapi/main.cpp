#include "endpoint.h"

int main() {
    return serverlog::endpoint::Serve();
}
