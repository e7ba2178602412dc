#pragma once

#include <mailserver-log/record/columns.h>
#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <string>
#include <vector>

#include "input/input.h"
#include "input/line_reader.h"
#include "output/progress.h"
#include "process/failure.h"
#include "process/stop_signal.h"
#include "stores/opened_store.h"
#include "stores/transaction.h"

namespace serverlog::program {

/// What the command line of `load` asks for.
struct LoadOptions {
    std::string store;
    std::string path = "-";
    std::size_t batch = 1000;
    bool keep_going = false;
};

/// Inserts records into one store, a class of stores.h, from NDJSON.
template <class Store>
class Loader {
 public:
    /// @param options  must outlive this object
    ///
    /// Throws Failure if the file or the store can't be opened.
    explicit Loader(const LoadOptions& options)
        : options_(options),
          input_(OpenInput(options.path)),
          store_(Store::kPath),
          progress_("lines", FileSize(input_.Get())) {
        KeepChangesInMemory(store_.Get().GetSession());
    }

    /// Works until the end of the input. Throws Failure if a line can't be read or stored, after
    /// storing what stands before it.
    void Run() {
        const StopSignal stop;
        LineReader lines(input_.Get(), stop);
        std::string line;
        while (!stop.Requested() && lines.Next(line, true) == Arrival::kLine) {
            ++line_number_;
            bytes_ += line.size() + 1;
            Take(line);
            progress_.Show(line_number_, bytes_);
        }
        Insert();
        progress_.Clear();
        std::cerr << "loaded " << loaded_ << (unreadable_ > 0 ? ", unreadable " : "")
                  << (unreadable_ > 0 ? std::to_string(unreadable_) : "") << std::endl;
        if (stop.Requested()) {
            throw Failure("stopped behind line " + std::to_string(line_number_) +
                          "; load from line " + std::to_string(line_number_ + 1) + " on to go on");
        }
        if (unreadable_ > 0) {
            throw Failure(std::to_string(unreadable_) +
                          " lines could not be read; mend those lines "
                          "and load them alone");
        }
    }

 private:
    using Record = typename Store::Record;

    // 0 for what is no file.
    static std::uint64_t FileSize(int descriptor) {
        struct stat status = {};
        return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)
                   ? static_cast<std::uint64_t>(status.st_size)
                   : 0;
    }

    void Take(const std::string& line) {
        if (line.find_first_not_of(" \t\r") == std::string::npos) {
            return;
        }
        try {
            batch_.push_back(record::FromJson<Record>(Parse(line)));
        } catch (const std::runtime_error& error) {
            Refuse(error.what());
        }
        if (batch_.size() >= options_.batch) {
            Insert();
        }
    }

    static Json::Value Parse(const std::string& line) {
        if (line.size() > LineReader::kLongestLine) {
            throw Failure("the line is longer than " + std::to_string(LineReader::kLongestLine) +
                          " bytes");
        }
        return ParseDocument(line, "the line");
    }

    void Refuse(const std::string& reason) {
        const std::string text = "line " + std::to_string(line_number_) + ": " + reason;
        if (!options_.keep_going) {
            Insert();
            throw Failure(text + "; the " + std::to_string(loaded_) +
                          " records before it are stored, mend it and load from there on");
        }
        ++unreadable_;
        progress_.Clear();
        std::cerr << "mailserver-log: " << text << std::endl;
    }

    void Insert() {
        if (batch_.empty()) {
            return;
        }
        try {
            auto& table = store_.Get().MainTable();
            Transaction transaction(store_.Get().GetSession());
            for (const Record& record : batch_) {
                if (!table.Create(record)) {
                    throw Failure("the store does not take a row: " + table.LastError());
                }
            }
            transaction.Commit();
        } catch (...) {
            throw Failure("cannot store the records up to line " + std::to_string(line_number_) +
                          ": " + DescribeException() + "; the first " + std::to_string(loaded_) +
                          " records are stored, load the others once that is mended");
        }
        loaded_ += batch_.size();
        batch_.clear();
    }

    const LoadOptions& options_;
    UniqueDescriptor input_;
    OpenedStore<Store> store_;
    Progress progress_;
    std::vector<Record> batch_;
    std::size_t line_number_ = 0;
    std::uint64_t bytes_ = 0;
    std::size_t loaded_ = 0;
    std::size_t unreadable_ = 0;
};

}  // namespace serverlog::program
