#include <CLI/CLI.hpp>

int main(int argc, char** argv) {
    CLI::App program("Log back end of a mail server");
    program.set_version_flag("--version", "mailserver-log " MAILSERVER_LOG_VERSION);
    CLI11_PARSE(program, argc, argv);
    return 0;
}
