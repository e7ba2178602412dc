#include <mailserver-log/log/rotation/rotater.h>

#include <memory>
#include <string>
#include <vector>

#include "stores/rotation_watch.h"
#include "stores/store_step.h"
#include "stores/stores.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

bool Rotate(const std::string& name) {
    return VisitStore(name, [](auto store) {
        using Store = decltype(store);
        const RotationWatch watch(Store::kName, Store::kWorkPath);
        return log::rotation::Rotater<typename Store::DB>(Store::kPath).Rotate();
    });
}

}  // namespace

void AddRotate(CLI::App& program) {
    const auto names = std::make_shared<std::vector<std::string>>();
    CLI::App* rotate = program.add_subcommand(
        "rotate", "Move the rows that are older than today to the long-term files");
    rotate->footer("While archiving is on, the rows are also kept for the next archive.");
    AddStores(*rotate, *names);
    rotate->callback([names] { RunOnStores(*names, "rotated", Rotate); });
}

}  // namespace serverlog::program
