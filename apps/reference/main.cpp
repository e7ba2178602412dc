// Writes the manual pages and the completions of mailserver-log, from what its --help is made of.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "completions.h"
#include "config/option_list.h"
#include "man_pages.h"
#include "program.h"

namespace {

namespace fs = std::filesystem;
using serverlog::reference::Command;

class Folder {
 public:
    explicit Folder(fs::path path) : path_(std::move(path)) { fs::create_directories(path_); }

    template <class Write>
    void Make(const std::string& name, Write&& write) const {
        std::ofstream file(path_ / name);
        write(file);
        if (!file.flush()) {
            throw std::runtime_error("cannot write " + (path_ / name).string());
        }
    }

 private:
    const fs::path path_;
};

void WriteReference(const Folder& folder) {
    const auto app = serverlog::program::MakeProgram();
    const Command program = serverlog::reference::ReadCommand(*app);
    std::vector<Command> subcommands;
    for (const CLI::App* subcommand : serverlog::program::Subcommands(*app)) {
        subcommands.push_back(serverlog::reference::ReadCommand(*subcommand));
    }
    const std::string release = app->version();
    folder.Make("mailserver-log.1", [&](std::ostream& out) {
        serverlog::reference::WriteProgramPage(out, release, program, subcommands);
    });
    for (const Command& subcommand : subcommands) {
        const std::string section = std::to_string(serverlog::reference::SectionOf(subcommand));
        folder.Make("mailserver-log-" + subcommand.name + "." + section, [&](std::ostream& out) {
            serverlog::reference::WriteSubcommandPage(out, release, subcommand);
        });
    }
    folder.Make("mailserver-log.conf.5", [&](std::ostream& out) {
        serverlog::reference::WriteConfigurationPage(out, release, subcommands);
    });
    folder.Make("mailserver-log.bash", [&](std::ostream& out) {
        serverlog::reference::WriteBashCompletion(out, program, subcommands);
    });
    folder.Make("_mailserver-log", [&](std::ostream& out) {
        serverlog::reference::WriteZshCompletion(out, program, subcommands);
    });
    folder.Make("mailserver-log.fish", [&](std::ostream& out) {
        serverlog::reference::WriteFishCompletion(out, program, subcommands);
    });
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: mailserver-log-reference FOLDER\n";
        return 2;
    }
    try {
        WriteReference(Folder(argv[1]));
    } catch (const std::exception& error) {
        std::cerr << "mailserver-log-reference: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
