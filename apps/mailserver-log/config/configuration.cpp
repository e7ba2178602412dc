#include "config/configuration.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "config/option_list.h"

namespace serverlog::program {

namespace {

namespace fs = std::filesystem;

std::vector<std::string> InstalledFiles() {
    std::vector<std::string> files;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(kConfigFolder, error)) {
        if (entry.path().extension() == ".conf") {
            files.push_back(entry.path().string());
        }
    }
    std::sort(files.begin(), files.end());
    if (fs::exists(kConfigFile, error)) {
        files.insert(files.begin(), kConfigFile);
    }
    return files;
}

std::string Quoted(const std::string& value) {
    // The form knows no escapes: a value that has both quotes in it cannot stand there at all.
    const char quote = value.find('"') == std::string::npos ? '"' : '\'';
    return quote + value + quote;
}

void DumpOption(const CLI::Option& option) {
    std::cout << "# " << option.get_description() << "\n";
    const std::string name = option.get_lnames().front();
    if (option.count() == 0) {
        std::cout << "#" << name << "=\n";
        return;
    }
    std::vector<std::string> values = option.reduced_results();
    if (option.get_expected_min() == 0) {
        std::cout << name << "=" << values.front() << "\n";
        return;
    }
    std::transform(values.begin(), values.end(), values.begin(), Quoted);
    const std::string list = CLI::detail::join(values, ", ");
    std::cout << name << "=" << (values.size() == 1 ? list : "[" + list + "]") << "\n";
}

void DumpConfiguration(const CLI::App& program) {
    for (const CLI::App* subcommand : Subcommands(program)) {
        const std::vector<const CLI::Option*> options = ConfigurableOptions(*subcommand);
        if (options.empty()) {
            continue;
        }
        std::cout << "[" << subcommand->get_name() << "]\n";
        for (const CLI::Option* option : options) {
            DumpOption(*option);
        }
        std::cout << "\n";
    }
}

}  // namespace

void AddConfiguration(CLI::App& program) {
    for (CLI::App* subcommand : program.get_subcommands({})) {
        for (CLI::Option* option : subcommand->get_options()) {
            option->configurable(!option->get_positional() && option->get_configurable());
        }
    }
    program.allow_config_extras(CLI::config_extras_mode::error);
    program
        .set_config("--config", CLI::detail::join(InstalledFiles(), ","),
                    std::string("Read options from this file, and not from ") + kConfigFile +
                        " and " + kConfigFolder + "/*.conf")
        ->type_name("FILE")
        ->delimiter(',')
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    program
        .add_flag_callback(
            "--dump-config",
            [&program] {
                DumpConfiguration(program);
                throw CLI::Success();
            },
            "Write all options that may stand in these files, with the values in force")
        ->configurable(false);
}

}  // namespace serverlog::program
