#include <string>

#include "completions.h"

namespace serverlog::reference {

namespace {

constexpr char kLine[] = "complete -c mailserver-log";

std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char character : text) {
        quoted += character == '\'' || character == '\\' ? "\\" : "";
        quoted += character == '\n' ? ' ' : character;
    }
    return quoted + "'";
}

std::string Values(const Argument& argument) {
    if (argument.takes_file) {
        return " -r -F";
    }
    if (argument.choices.empty()) {
        return " -x";
    }
    return " -x -a " + Quoted(CLI::detail::join(argument.choices, " "));
}

void WriteArguments(std::ostream& out, const Command& command, const std::string& condition) {
    const std::string start = std::string(kLine) + " -n " + Quoted(condition);
    for (const Argument& option : command.options) {
        out << start;
        for (const std::string& name : option.names) {
            out << (name.rfind("--", 0) == 0 ? " -l " + name.substr(2) : " -s " + name.substr(1));
        }
        out << (option.value.empty() ? "" : Values(option)) << " -d " << Quoted(option.description)
            << "\n";
    }
    for (const Argument& positional : command.positionals) {
        if (positional.takes_file) {
            out << start << " -F\n";
        } else if (!positional.choices.empty()) {
            out << start << " -a " << Quoted(CLI::detail::join(positional.choices, " ")) << "\n";
        }
    }
}

}  // namespace

void WriteFishCompletion(std::ostream& out, const Command& program,
                         const std::vector<Command>& subcommands) {
    out << "# Completes the command line of mailserver-log.\n\n" << kLine << " -f\n";
    WriteArguments(out, program, "__fish_use_subcommand");
    for (const Command& subcommand : subcommands) {
        out << kLine << " -n __fish_use_subcommand -a " << subcommand.name << " -d "
            << Quoted(subcommand.description) << "\n";
        WriteArguments(out, subcommand, "__fish_seen_subcommand_from " + subcommand.name);
    }
}

}  // namespace serverlog::reference
