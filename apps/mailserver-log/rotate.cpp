#include <mailserver-log/log/rotation/rotater.h>

#include <ctime>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "schedule/rotation_schedule.h"
#include "stores/rotation_watch.h"
#include "stores/store_facts.h"
#include "stores/store_step.h"
#include "stores/stores.h"
#include "subcommands.h"

namespace serverlog::program {

namespace {

struct RotateOptions {
    std::vector<std::string> stores;
    bool if_due = false;
};

bool Rotate(const std::string& name) {
    return VisitStore(name, [](auto store) {
        using Store = decltype(store);
        const RotationWatch watch(Store::kName, Store::kWorkPath);
        return log::rotation::Rotater<typename Store::DB>(Store::kPath).Rotate();
    });
}

// Writes a line for each that is not due.
std::vector<std::string> DueStores(const std::vector<std::string>& names) {
    const RotationSchedule schedule = ReadRotationSchedule();
    const std::time_t now = std::time(nullptr);
    std::vector<std::string> due;
    for (const std::string& name : names) {
        if (VisitStore(name, [&](auto store) {
                return IsRotationDue(schedule, FactsOf<decltype(store)>(), now);
            })) {
            due.push_back(name);
        } else {
            std::cout << name << ": not due" << std::endl;
        }
    }
    return due;
}

void RotateStores(const RotateOptions& options) {
    std::vector<std::string> names = OrAllStores(options.stores);
    if (options.if_due) {
        names = DueStores(names);
    }
    RunOnStores(names, "rotated", Rotate);
}

}  // namespace

void AddRotate(CLI::App& program) {
    const auto options = std::make_shared<RotateOptions>();
    CLI::App* rotate = program.add_subcommand(
        "rotate", "Move the rows that are older than today to the long-term files");
    rotate->footer("While archiving is on, the rows are also kept for the next archive.");
    AddStores(*rotate, options->stores);
    rotate->add_flag("--if-due", options->if_due,
                     "Only stores whose time has come, by the settings enable_rotate_period, "
                     "log_rotate_period (daily, weekly, monthly) and log_rotate_size (in MiB)");
    rotate->callback([options] { RotateStores(*options); });
}

}  // namespace serverlog::program
