#include "input/line_reader.h"

#include <unistd.h>

#include <cerrno>

#include "process/failure.h"

namespace serverlog::program {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 16;

}  // namespace

LineReader::LineReader(int descriptor, const StopSignal& stop, std::size_t longest)
    : descriptor_(descriptor), stop_(stop), longest_(longest) {}

Arrival LineReader::Next(std::string& line, bool wait) {
    const auto limit = wait ? StopSignal::kForever : std::chrono::milliseconds(0);
    for (;;) {
        if (TakeLine(line)) {
            return Arrival::kLine;
        }
        if (ended_) {
            return TakeRest(line) ? Arrival::kLine : Arrival::kEnd;
        }
        switch (stop_.Wait(descriptor_, limit)) {
            case StopSignal::Wake::kReadable:
                Fill();
                break;
            case StopSignal::Wake::kStop:
                ended_ = true;
                break;
            case StopSignal::Wake::kTimeout:
                if (!wait) {
                    return Arrival::kNothing;
                }
                break;
        }
    }
}

bool LineReader::TakeLine(std::string& line) {
    if (dropping_) {
        DropLongTail();
    }
    const std::size_t end = buffer_.find('\n', scanned_);
    if (end != std::string::npos) {
        line.assign(buffer_, begin_, end - begin_);
        begin_ = scanned_ = end + 1;
        if (line.size() > longest_) {
            line.resize(longest_ + 1);
        }
        return true;
    }
    scanned_ = buffer_.size();
    if (buffer_.size() - begin_ <= longest_) {
        return false;
    }
    line.assign(buffer_, begin_, longest_ + 1);
    dropping_ = true;
    return true;
}

bool LineReader::TakeRest(std::string& line) {
    if (dropping_ || begin_ == buffer_.size()) {
        return false;
    }
    line.assign(buffer_, begin_);
    begin_ = scanned_ = buffer_.size();
    return true;
}

void LineReader::DropLongTail() {
    const std::size_t end = buffer_.find('\n', begin_);
    dropping_ = end == std::string::npos;
    begin_ = scanned_ = dropping_ ? buffer_.size() : end + 1;
}

void LineReader::Fill() {
    buffer_.erase(0, begin_);
    scanned_ -= begin_;
    begin_ = 0;
    const std::size_t size = buffer_.size();
    buffer_.resize(size + kChunk);
    const ssize_t count = read(descriptor_, buffer_.data() + size, kChunk);
    buffer_.resize(size + (count > 0 ? static_cast<std::size_t>(count) : 0));
    if (count == 0) {
        ended_ = true;
    } else if (count < 0 && errno != EINTR && errno != EAGAIN) {
        throw Failure(DescribeErrno("cannot read the input"));
    }
}

}  // namespace serverlog::program
