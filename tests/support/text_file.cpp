#include "support/text_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace test {

void WriteTextFile(const std::string& path, const std::string& text, unsigned mode) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!(file << text << std::flush) || chmod(path.c_str(), mode) != 0) {
        throw std::runtime_error("cannot write " + path);
    }
}

std::string ReadTextFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    if (!file || !(text << file.rdbuf())) {
        throw std::runtime_error("cannot read " + path);
    }
    return text.str();
}

std::vector<std::string> FilesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace test
