#include "config/option_list.h"

namespace serverlog::program {

std::vector<const CLI::App*> Subcommands(const CLI::App& program) {
    return program.get_subcommands([](const CLI::App* command) { return command != nullptr; });
}

std::vector<const CLI::Option*> ConfigurableOptions(const CLI::App& command) {
    return command.get_options([](const CLI::Option* option) {
        return option->get_configurable() && !option->get_lnames().empty();
    });
}

}  // namespace serverlog::program
