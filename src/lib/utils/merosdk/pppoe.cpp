#include "utils/merosdk/pppoe.h"

#include <mero/network.h>

namespace serverlog::utils {

std::string PPPoeInterface() {
    char name[256] = {};
    if (MEROPPPoeIntfGet(name, sizeof name) < 0) {
        return {};
    }
    return name;
}

}  // namespace serverlog::utils
