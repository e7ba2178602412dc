#include "input/journal_source.h"

#include <fcntl.h>
#include <json/json.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <memory>
#include <utility>

#include "process/failure.h"
#include "process/unique_descriptor.h"

namespace serverlog::program {

namespace {

// A message that is no UTF-8 comes as a list of its bytes in decimal.
constexpr std::size_t kLongestEntry = 5 * LineReader::kLongestLine;

// Besides the time, which always comes.
constexpr char kHeadFields[] = ",_HOSTNAME,SYSLOG_IDENTIFIER,SYSLOG_PID,_PID";

std::string ReadPlace(const std::string& path) {
    std::string place;
    std::ifstream file(path);
    std::getline(file, place);
    return place;
}

std::vector<std::string> Command(const JournalSelection& selection, const std::string& place,
                                 bool once) {
    std::vector<std::string> command = {
        "journalctl",
        "--quiet",
        "--all",
        "--output=json",
        std::string("--output-fields=MESSAGE") + (selection.with_head ? kHeadFields : ""),
        "--facility=mail",
        std::string("--priority=") + selection.priorities};
    if (!once) {
        command.insert(command.end(), {"--follow", "--no-tail"});
    }
    if (!place.empty()) {
        command.push_back("--after-cursor=" + place);
    }
    return command;
}

std::string Text(const Json::Value& message) {
    if (!message.isArray()) {
        return message.asString();
    }
    std::string text;
    for (const Json::Value& byte : message) {
        text += static_cast<char>(byte.asInt());
    }
    return text;
}

// "2026-11-22T10:00:00.000001Z host program[process]: "
std::string Head(const Json::Value& entry) {
    constexpr std::uint64_t kMicroseconds = 1000000;
    const std::uint64_t time =
        std::strtoull(entry["__REALTIME_TIMESTAMP"].asCString(), nullptr, 10);
    const auto seconds = static_cast<std::time_t>(time / kMicroseconds);
    std::tm utc = {};
    gmtime_r(&seconds, &utc);
    char stamp[64];
    std::strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%S.", &utc);
    const std::string fraction = std::to_string(kMicroseconds + time % kMicroseconds).substr(1);
    const Json::Value& process = entry[entry.isMember("SYSLOG_PID") ? "SYSLOG_PID" : "_PID"];
    return stamp + fraction + "Z " + Text(entry["_HOSTNAME"]) + ' ' +
           Text(entry["SYSLOG_IDENTIFIER"]) + (process.isNull() ? "" : '[' + Text(process) + ']') +
           ": ";
}

}  // namespace

JournalSource::JournalSource(const JournalSelection& selection, std::string place_path, bool once,
                             const StopSignal& stop, Retry& retry)
    : with_head_(selection.with_head),
      place_path_(std::move(place_path)),
      stop_(stop),
      retry_(retry),
      place_(ReadPlace(place_path_)),
      saved_place_(place_),
      journal_(Command(selection, place_, once)),
      entries_(journal_.Output(), stop, kLongestEntry) {}

Arrival JournalSource::Next(std::string& line, bool wait) {
    std::string entry;
    const Arrival arrival = entries_.Next(entry, wait);
    if (arrival == Arrival::kNothing) {
        return arrival;
    }
    // A stop can come in the middle of an entry, which then comes again at the next start.
    const bool cut = stop_.Requested() && (entry.empty() || entry.back() != '}');
    if (arrival == Arrival::kLine && !cut) {
        Decode(entry, line);
        return arrival;
    }
    const int status = stop_.Requested() ? 0 : journal_.Wait();
    if (status != 0) {
        throw Failure("journalctl ended with status " + std::to_string(status) +
                      "; run it by hand to see why");
    }
    return Arrival::kEnd;
}

void JournalSource::Decode(const std::string& entry, std::string& line) {
    Json::Value value;
    const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    std::string errors;
    try {
        if (!reader->parse(entry.data(), entry.data() + entry.size(), &value, &errors)) {
            throw Failure("journalctl wrote an entry that is no JSON");
        }
        line = (with_head_ ? Head(value) : std::string()) + Text(value["MESSAGE"]);
        place_ = value["__CURSOR"].asString();
    } catch (const Json::Exception& error) {
        throw Failure(std::string("journalctl wrote an entry that cannot be read: ") +
                      error.what());
    }
}

void JournalSource::Stored() {
    if (place_ != saved_place_ &&
        retry_.Run("save the place in the journal in " + place_path_, [this] { SavePlace(); })) {
        saved_place_ = place_;
    }
}

void JournalSource::SavePlace() const {
    const std::string text = place_ + '\n';
    const std::string fresh = place_path_ + ".new";
    const UniqueDescriptor file(
        open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (!file || write(file.Get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()) ||
        fsync(file.Get()) != 0 || std::rename(fresh.c_str(), place_path_.c_str()) != 0) {
        throw Failure(DescribeErrno("cannot write " + fresh));
    }
}

}  // namespace serverlog::program
