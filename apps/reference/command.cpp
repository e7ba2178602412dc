#include "command.h"

namespace serverlog::reference {

namespace {

// CLI11 tells of a check behind the type: "TEXT:{admin,mail}", "N:UINT in [1 - 100]".
std::string ValueName(const std::string& type) {
    return type.substr(0, type.find(':'));
}

std::vector<std::string> Choices(const std::string& type) {
    const std::size_t start = type.find(":{");
    const std::size_t end = type.rfind('}');
    if (start == std::string::npos || end == std::string::npos) {
        return {};
    }
    return CLI::detail::split(type.substr(start + 2, end - start - 2), ',');
}

bool IsFile(const std::string& name) {
    return name == "FILE" || name == "PATH";
}

Argument ReadArgument(const CLI::Option& option) {
    Argument argument;
    for (const std::string& name : option.get_snames()) {
        argument.names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        argument.names.push_back("--" + name);
    }
    const std::string type = option.get_type_name();
    const bool is_positional = argument.names.empty();
    if (is_positional) {
        argument.names.push_back(option.get_name(true));
    }
    if (option.get_items_expected_max() > 0) {
        argument.value = is_positional ? argument.names.front() : ValueName(type);
    }
    argument.choices = Choices(type);
    argument.description = option.get_description();
    argument.takes_file = IsFile(argument.value);
    argument.is_required = option.get_required();
    argument.is_repeated = option.get_items_expected_max() >= CLI::detail::expected_max_vector_size;
    argument.is_configurable = option.get_configurable();
    return argument;
}

}  // namespace

Command ReadCommand(const CLI::App& app) {
    Command command;
    command.name = app.get_name();
    command.description = app.get_description();
    command.footer = app.get_footer();
    for (const CLI::Option* option : app.get_options()) {
        (option->nonpositional() ? command.options : command.positionals)
            .push_back(ReadArgument(*option));
    }
    return command;
}

}  // namespace serverlog::reference
