#include <string>

#include "completions.h"

namespace serverlog::reference {

namespace {

constexpr char kStart[] = R"(# Completes the command line of mailserver-log.

_mailserver_log() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command= i
    # bash takes --name=value apart at the sign.
    if [ "$word" = = ]; then
        word=
    elif [ "$previous" = = ]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
        --config) ((i++)) ;;
        -*) ;;
        *)
            command=${COMP_WORDS[i]}
            break
            ;;
        esac
    done
    local options= values= files=
    case "$command:$previous" in
)";

constexpr char kEnd[] = R"(    esac
    if [ "${word:0:1}" = - ]; then
        values=$options files=
    fi
    [ -z "$files" ] || compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(
        compgen -W "$values" -- "$word"
        [ -z "$files" ] || compgen -f -- "$word"
    )
}

complete -F _mailserver_log mailserver-log
)";

std::string Words(const std::vector<std::string>& words) {
    return "\"" + CLI::detail::join(words, " ") + "\"";
}

// What may follow an option that takes a value.
void WriteValues(std::ostream& out, const std::string& command, const Argument& option) {
    if (option.value.empty()) {
        return;
    }
    std::vector<std::string> patterns;
    for (const std::string& name : option.names) {
        patterns.emplace_back(command).append(":").append(name);
    }
    out << "    " << CLI::detail::join(patterns, " | ") << ") ";
    if (option.takes_file) {
        out << "files=yes ";
    } else if (!option.choices.empty()) {
        out << "values=" << Words(option.choices) << " ";
    }
    out << ";;\n";
}

void WriteCommand(std::ostream& out, const Command& command, std::vector<std::string> values) {
    std::vector<std::string> options;
    for (const Argument& option : command.options) {
        options.insert(options.end(), option.names.begin(), option.names.end());
    }
    bool takes_files = false;
    for (const Argument& positional : command.positionals) {
        values.insert(values.end(), positional.choices.begin(), positional.choices.end());
        takes_files = takes_files || positional.takes_file;
    }
    out << " options=" << Words(options) << " values=" << Words(values)
        << (takes_files ? " files=yes" : "") << " ;;\n";
}

}  // namespace

void WriteBashCompletion(std::ostream& out, const Command& program,
                         const std::vector<Command>& subcommands) {
    out << kStart;
    for (const Argument& option : program.options) {
        WriteValues(out, "", option);
    }
    for (const Command& subcommand : subcommands) {
        for (const Argument& option : subcommand.options) {
            WriteValues(out, subcommand.name, option);
        }
    }
    std::vector<std::string> names;
    for (const Command& subcommand : subcommands) {
        out << "    " << subcommand.name << ":*)";
        WriteCommand(out, subcommand, {});
        names.push_back(subcommand.name);
    }
    out << "    :*)";
    WriteCommand(out, program, names);
    out << kEnd;
}

}  // namespace serverlog::reference
