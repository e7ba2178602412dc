#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "output/standard_output.h"
#include "process/failure.h"
#include "process/sqlite_mode.h"
#include "program.h"

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
    } catch (const CLI::ConfigError& error) {
        std::cerr
            << "mailserver-log: " << error.what()
            << "; mend the configuration files: mailserver-log.conf(5) tells what they may hold"
            << std::endl;
        return kWrongUsage;
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
    serverlog::program::PrepareSqlite();
    return Run(*serverlog::program::MakeProgram(), argc, argv);
}
