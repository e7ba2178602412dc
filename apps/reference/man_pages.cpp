#include "man_pages.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "config/configuration.h"

namespace serverlog::reference {

namespace {

constexpr const char* kAdministration[] = {"archive", "collect",    "rotate",
                                           "status",  "statistics", "upgrade"};

// Text between macros: no character of it is one of roff's own.
std::string Roff(const std::string& text) {
    std::string escaped;
    for (const char character : text) {
        const bool starts_line = escaped.empty() || escaped.back() == '\n';
        if (starts_line && (character == '.' || character == '\'')) {
            escaped += "\\&";
        }
        if (character == '\\') {
            escaped += "\\e";
        } else if (character == '-') {
            escaped += "\\-";
        } else {
            escaped += character;
        }
    }
    return escaped;
}

std::string Bold(const std::string& text) {
    return "\\fB" + Roff(text) + "\\fR";
}

std::string Italic(const std::string& text) {
    return "\\fI" + Roff(text) + "\\fR";
}

void WriteHead(std::ostream& out, const std::string& name, int section, const std::string& release,
               const std::string& purpose) {
    // The date is left out, so that a page changes only when its text does.
    out << ".TH \"" << CLI::detail::to_lower(name) << "\" " << section << " \"\" \"" << release
        << "\"\n.SH NAME\n"
        << Roff(name) << " \\- " << Roff(purpose.substr(0, purpose.find('\n'))) << "\n";
}

std::string Term(const Argument& argument) {
    std::string term;
    for (const std::string& name : argument.names) {
        term += (term.empty() ? "" : ", ") + Bold(name);
    }
    if (argument.value.empty() || argument.value == argument.names.front()) {
        return term;
    }
    return term + (argument.names.back().back() == '=' ? "" : " ") + Italic(argument.value);
}

std::string Synopsis(const Argument& positional) {
    const std::string name =
        Italic(positional.value) + std::string(positional.is_repeated ? "..." : "");
    return positional.is_required ? name : "[" + name + "]";
}

void WriteArguments(std::ostream& out, const std::vector<Argument>& arguments) {
    for (const Argument& argument : arguments) {
        out << ".TP\n" << Term(argument) << "\n" << Roff(argument.description) << "\n";
        if (!argument.choices.empty()) {
            out << ".br\nOne of: " << Roff(CLI::detail::join(argument.choices, ", ")) << "\n";
        }
    }
}

void WriteStatus(std::ostream& out) {
    out << ".SH EXIT STATUS\n0 done, 1 failed, 2 wrong usage. What failed, why, and what to do "
           "about it is told on standard\nerror.\n";
}

std::string PageName(const Command& subcommand) {
    return "mailserver-log-" + subcommand.name;
}

std::string Reference(const std::string& page, int section) {
    return Bold(page) + "(" + std::to_string(section) + ")";
}

}  // namespace

int SectionOf(const Command& command) {
    const bool is_administration = std::find(std::begin(kAdministration), std::end(kAdministration),
                                             command.name) != std::end(kAdministration);
    return is_administration ? 8 : 1;
}

void WriteProgramPage(std::ostream& out, const std::string& release, const Command& program,
                      const std::vector<Command>& subcommands) {
    WriteHead(out, program.name, 1, release, program.description);
    out << ".SH SYNOPSIS\n"
        << Bold(program.name) << " [" << Italic("OPTION") << "...] " << Italic("SUBCOMMAND") << " ["
        << Italic("ARGUMENT") << "...]\n.SH DESCRIPTION\n"
        << "Stores the admin, mail and security logs of a mail server, and lists them. Each\n"
           "subcommand has a page of its own.\n.SH SUBCOMMANDS\n";
    for (const Command& subcommand : subcommands) {
        out << ".TP\n"
            << Reference(PageName(subcommand), SectionOf(subcommand)) << "\n"
            << Roff(subcommand.description) << "\n";
    }
    out << ".SH OPTIONS\n";
    WriteArguments(out, program.options);
    WriteStatus(out);
    out << ".SH FILES\n.TP\n"
        << Roff(program::kConfigFile) << "\nOptions; see " << Reference("mailserver-log.conf", 5)
        << "\n.TP\n"
        << Roff("/var/spool/@PostCube-Server/aggr_log/") << "\nThe logs\n.SH SEE ALSO\n"
        << Reference("mailserver-log.conf", 5) << "\n";
}

void WriteSubcommandPage(std::ostream& out, const std::string& release, const Command& subcommand) {
    WriteHead(out, PageName(subcommand), SectionOf(subcommand), release, subcommand.description);
    out << ".SH SYNOPSIS\n"
        << Bold("mailserver-log " + subcommand.name) << " [" << Italic("OPTION") << "...]";
    for (const Argument& positional : subcommand.positionals) {
        out << " " << Synopsis(positional);
    }
    out << "\n.SH DESCRIPTION\n" << Roff(subcommand.description) << ".\n";
    if (!subcommand.footer.empty()) {
        out << ".PP\n" << Roff(subcommand.footer) << "\n";
    }
    if (!subcommand.positionals.empty()) {
        out << ".SH ARGUMENTS\n";
        WriteArguments(out, subcommand.positionals);
    }
    out << ".SH OPTIONS\n";
    WriteArguments(out, subcommand.options);
    WriteStatus(out);
    out << ".SH SEE ALSO\n"
        << Reference("mailserver-log", 1) << ", " << Reference("mailserver-log.conf", 5) << "\n";
}

void WriteConfigurationPage(std::ostream& out, const std::string& release,
                            const std::vector<Command>& subcommands) {
    WriteHead(out, "mailserver-log.conf", 5, release, "options of mailserver-log");
    out << ".SH SYNOPSIS\n.nf\n"
        << Roff(program::kConfigFile) << "\n"
        << Roff(program::kConfigFolder) << "/*.conf\n.fi\n.SH DESCRIPTION\n"
        << "What stands here takes the place of options on the command line of\n"
        << Reference("mailserver-log", 1)
        << ".\nThe files of the folder are read after the first, by their names; the file that is "
           "read\nlast counts, and the command line more than any. Each subcommand has a section, "
           "each of its\noptions a line; # begins a comment:\n.PP\n.nf\n.RS\n[statistics]\n"
           "period=600\n.RE\n.fi\n.PP\nA flag is true or false. "
        << Bold("mailserver-log --dump-config")
        << " writes all\noptions, with the values in force.\n";
    for (const Command& subcommand : subcommands) {
        std::vector<Argument> options;
        for (Argument option : subcommand.options) {
            if (option.is_configurable) {
                option.names = {option.names.back().substr(2) + "="};
                options.push_back(option);
            }
        }
        if (!options.empty()) {
            out << ".SH [" << Roff(subcommand.name) << "]\n";
            WriteArguments(out, options);
        }
    }
    out << ".SH SEE ALSO\n" << Reference("mailserver-log", 1) << "\n";
}

}  // namespace serverlog::reference
