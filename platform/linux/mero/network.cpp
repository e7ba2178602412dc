#include "mero/network.h"

#include <dirent.h>
#include <net/if_arp.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

namespace {

constexpr char kFolder[] = "/sys/class/net";

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

bool IsPointToPointLink(const std::string& interface) {
    std::ifstream file(kFolder + ("/" + interface) + "/type");
    int type = 0;
    return file >> type && type == ARPHRD_PPP;
}

std::string FirstPointToPointLink() {
    const std::unique_ptr<DIR, CloseFolder> folder(opendir(kFolder));
    std::string first;
    while (const dirent* entry = folder == nullptr ? nullptr : readdir(folder.get())) {
        const std::string name = entry->d_name;
        if ((first.empty() || name < first) && IsPointToPointLink(name)) {
            first = name;
        }
    }
    return first;
}

}  // namespace

int MEROPPPoeIntfGet(char* buffer, int size) {
    const std::string name = FirstPointToPointLink();
    if (buffer == nullptr || size <= 0 || name.empty() ||
        name.size() >= static_cast<std::size_t>(size)) {
        return -1;
    }
    std::memcpy(buffer, name.c_str(), name.size() + 1);
    return 0;
}
