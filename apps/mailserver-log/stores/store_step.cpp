#include "stores/store_step.h"

#include <iostream>

#include "process/failure.h"
#include "stores/store_facts.h"
#include "stores/store_report.h"
#include "stores/stores.h"

namespace serverlog::program {

namespace {

const std::vector<std::string> kAllStores = {AdminStore::kName, MailStore::kName,
                                             SecurityStore::kName};

bool Try(const std::function<bool(const std::string&)>& step, const std::string& name) {
    try {
        return step(name);
    } catch (...) {
        std::cerr << "mailserver-log: " << name << ": " << DescribeException() << std::endl;
        return false;
    }
}

// The library says no more than that it failed.
void TellWhatIsWrong(const std::string& name) {
    const StoreReport report =
        VisitStore(name, [](auto store) { return ExamineStore(FactsOf<decltype(store)>()); });
    if (!report.current.exists) {
        std::cerr << "mailserver-log: " << name << ": there is no store " << report.current.path
                  << " yet" << std::endl;
    }
    for (const Problem& problem : report.problems) {
        std::cerr << "mailserver-log: " << name << ": " << problem.what << "; " << problem.remedy
                  << std::endl;
    }
}

}  // namespace

void AddStores(CLI::App& command, std::vector<std::string>& names) {
    command.add_option("STORE", names, "admin, mail or security; all three if none is named")
        ->check(CLI::IsMember(kAllStores));
}

std::vector<std::string> OrAllStores(std::vector<std::string> names) {
    if (names.empty()) {
        return kAllStores;
    }
    return names;
}

void RunOnStores(const std::vector<std::string>& names, const std::string& done,
                 const std::function<bool(const std::string& name)>& step) {
    std::vector<std::string> failed;
    for (const std::string& name : names) {
        const bool is_done = Try(step, name);
        std::cout << name << ": " << (is_done ? done : "failed") << std::endl;
        if (!is_done) {
            failed.push_back(name);
            TellWhatIsWrong(name);
        }
    }
    if (!failed.empty()) {
        throw Failure("failed on " + CLI::detail::join(failed, ", ") +
                      "; no row is lost, the mail log tells why, and once that is mended the same "
                      "command goes on");
    }
}

}  // namespace serverlog::program
