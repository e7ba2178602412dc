#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "output/standard_output.h"
#include "process/failure.h"
#include "subcommands.h"

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

int FinishOutput() {
    if (std::cout.flush()) {
        return kDone;
    }
    if (!serverlog::program::ReaderHasGone()) {
        std::cerr << "mailserver-log: cannot write to standard output; is the disk full?"
                  << std::endl;
    }
    return kFailed;
}

int Run(CLI::App& program, int argc, char** argv) {
    try {
        program.parse(argc, argv);
        // Asked for here, and not by CLI11 itself, since that would hide what is wrong with a
        // mistyped name.
        if (program.get_subcommands().empty()) {
            throw CLI::RequiredError("A subcommand");
        }
    } catch (const CLI::Success& success) {  // the help or the version was asked for
        return program.exit(success);
    } catch (const CLI::ParseError& error) {
        program.exit(error);
        return kWrongUsage;
    } catch (const serverlog::program::ReaderGone&) {
        return kFailed;
    } catch (...) {
        std::cerr << "mailserver-log: " << serverlog::program::DescribeException() << std::endl;
        return kFailed;
    }
    return FinishOutput();
}

}  // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    CLI::App program(
        "Log back end of a mail server.\n"
        "Exit status: 0 done, 1 failed, 2 wrong usage.",
        "mailserver-log");
    program.set_version_flag("--version", "mailserver-log " MAILSERVER_LOG_VERSION);
    program.require_subcommand(0, 1);
    serverlog::program::AddCall(program);
    serverlog::program::AddCollect(program);
    serverlog::program::AddLoad(program);
    serverlog::program::AddList(program);
    serverlog::program::AddExport(program);
    serverlog::program::AddQuery(program);
    serverlog::program::AddStatistics(program);
    serverlog::program::AddStats(program);
    serverlog::program::AddTrace(program);
    serverlog::program::AddRotate(program);
    serverlog::program::AddArchive(program);
    serverlog::program::AddUpgrade(program);
    serverlog::program::AddStatus(program);
    return Run(program, argc, argv);
}
