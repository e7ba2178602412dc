#include <string>

#include "completions.h"

namespace serverlog::reference {

namespace {

// Within single quotes, where brackets and colons are _arguments' own.
std::string Zsh(const std::string& text) {
    std::string escaped;
    for (const char character : text) {
        if (character == '\'') {
            escaped += "'\\''";
        } else if (character == '\n') {
            escaped += ' ';
        } else {
            escaped += std::string("[]:\\").find(character) == std::string::npos ? "" : "\\";
            escaped += character;
        }
    }
    return escaped;
}

std::string Action(const Argument& argument) {
    if (argument.takes_file) {
        return "_files";
    }
    // A blank: there is a value, and nothing to offer for it.
    return argument.choices.empty() ? " " : "(" + CLI::detail::join(argument.choices, " ") + ")";
}

void WriteOption(std::ostream& out, const Argument& option, const std::string& indent) {
    for (const std::string& name : option.names) {
        out << " \\\n" << indent << "'" << name;
        if (!option.value.empty() && name.rfind("--", 0) == 0) {
            out << "=";
        }
        out << "[" << Zsh(option.description) << "]";
        if (!option.value.empty()) {
            out << ":" << Zsh(option.value) << ":" << Action(option);
        }
        out << "'";
    }
}

void WritePositionals(std::ostream& out, const Command& command, const std::string& indent) {
    int place = 0;
    for (const Argument& positional : command.positionals) {
        ++place;
        out << " \\\n"
            << indent << "'" << (positional.is_repeated ? "*" : std::to_string(place)) << ":"
            << Zsh(positional.value) << ":" << Action(positional) << "'";
    }
}

}  // namespace

void WriteZshCompletion(std::ostream& out, const Command& program,
                        const std::vector<Command>& subcommands) {
    out << "#compdef mailserver-log\n\n"
           "_mailserver-log() {\n"
           "    local context state state_descr line\n"
           "    typeset -A opt_args\n"
           "    _arguments -C";
    for (const Argument& option : program.options) {
        WriteOption(out, option, "        ");
    }
    out << " \\\n        '1:subcommand:->subcommand' \\\n        '*::argument:->arguments' && "
           "return\n"
           "    case $state in\n"
           "    subcommand)\n"
           "        local -a subcommands\n"
           "        subcommands=(\n";
    for (const Command& subcommand : subcommands) {
        out << "            '" << subcommand.name << ":" << Zsh(subcommand.description) << "'\n";
    }
    out << "        )\n"
           "        _describe subcommand subcommands\n"
           "        ;;\n"
           "    arguments)\n"
           "        case $words[1] in\n";
    for (const Command& subcommand : subcommands) {
        out << "        " << subcommand.name << ")\n            _arguments";
        for (const Argument& option : subcommand.options) {
            WriteOption(out, option, "                ");
        }
        WritePositionals(out, subcommand, "                ");
        out << "\n            ;;\n";
    }
    out << "        esac\n"
           "        ;;\n"
           "    esac\n"
           "}\n\n"
           "_mailserver-log \"$@\"\n";
}

}  // namespace serverlog::reference
