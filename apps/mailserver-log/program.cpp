#include "program.h"

#include "config/configuration.h"
#include "subcommands.h"

namespace serverlog::program {

std::unique_ptr<CLI::App> MakeProgram() {
    auto program = std::make_unique<CLI::App>(
        "Log back end of a mail server.\n"
        "Exit status: 0 done, 1 failed, 2 wrong usage.",
        "mailserver-log");
    program->set_version_flag("--version", "mailserver-log " MAILSERVER_LOG_VERSION);
    program->require_subcommand(0, 1);
    AddCall(*program);
    AddCollect(*program);
    AddLoad(*program);
    AddList(*program);
    AddExport(*program);
    AddQuery(*program);
    AddStatistics(*program);
    AddStats(*program);
    AddTrace(*program);
    AddRotate(*program);
    AddArchive(*program);
    AddUpgrade(*program);
    AddStatus(*program);
    AddConfiguration(*program);
    return program;
}

}  // namespace serverlog::program
