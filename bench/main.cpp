#include <benchmark/benchmark.h>

#include <exception>
#include <iostream>
#include <string>

#include "process/sqlite_mode.h"
#include "stores.h"

namespace {

// Takes "--<name>=<number>", one of our options, out of the arguments.
void TakeSize(int& argc, char** argv, const std::string& name, int& size) {
    const std::string start = "--" + name + "=";
    for (int i = 1; i < argc; ++i) {
        if (const std::string argument = argv[i]; argument.rfind(start, 0) == 0) {
            size = std::stoi(argument.substr(start.size()));
            for (int j = i--; j + 1 <= argc; ++j) {
                argv[j] = argv[j + 1];
            }
            --argc;
        }
    }
}

}  // namespace

// The benchmarks work on the product's own paths, so scripts/bench runs this in a sandbox.
int main(int argc, char** argv) {
    try {
        bench::StoreSizes& sizes = bench::Sizes();
        TakeSize(argc, argv, "current", sizes.current_rows);
        TakeSize(argc, argv, "long-term", sizes.long_term_rows);
        TakeSize(argc, argv, "addresses", sizes.addresses);
        int own_mode = 1;
        TakeSize(argc, argv, "own-sqlite-mode", own_mode);
        if (own_mode != 0) {
            serverlog::program::PrepareSqlite();  // as the program itself does
        }
        bench::MakeStores();
    } catch (const std::exception& error) {
        std::cerr << "mailserver-log-bench: " << error.what() << std::endl;
        return 1;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
