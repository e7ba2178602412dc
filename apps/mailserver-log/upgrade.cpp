#include <mailserver-log/log/upgrade/upgrader.h>

#include <memory>
#include <string>
#include <vector>

#include "stores/store_step.h"
#include "stores/stores.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

bool Upgrade(const std::string& name) {
    return VisitStore(name, [](auto store) {
        return log::upgrade::Upgrader<typename decltype(store)::DB>().Upgrade();
    });
}

}  // namespace

void AddUpgrade(CLI::App& program) {
    const auto names = std::make_shared<std::vector<std::string>>();
    CLI::App* upgrade =
        program.add_subcommand("upgrade", "Bring the files of the stores to this release's schema");
    AddStores(*upgrade, *names);
    upgrade->callback([names] { RunOnStores(OrAllStores(*names), "upgraded", Upgrade); });
}

}  // namespace serverlog::program
