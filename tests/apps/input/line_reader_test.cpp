#include "input/line_reader.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <utility>
#include <vector>

namespace serverlog::program {
namespace {

/// A pipe whose reading end a LineReader has.
class LineReaderTest : public testing::Test {
 protected:
    ~LineReaderTest() override {
        close(ends_[0]);
        Close();
    }

    static std::array<int, 2> Pipe() {
        std::array<int, 2> ends = {};
        EXPECT_EQ(pipe(ends.data()), 0);
        return ends;
    }
    void Write(const std::string& text) {
        ASSERT_EQ(write(ends_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    void Close() {
        if (ends_[1] >= 0) {
            close(std::exchange(ends_[1], -1));
        }
    }
    std::vector<std::string> Rest() {
        std::vector<std::string> lines;
        for (std::string line; reader_.Next(line, true) == Arrival::kLine;) {
            lines.push_back(line);
        }
        return lines;
    }

    StopSignal stop_;
    std::array<int, 2> ends_ = Pipe();
    LineReader reader_{ends_[0], stop_, 10};
};

TEST_F(LineReaderTest, GivesLinesAsTheyStand) {
    Write(std::string("a\0b\n\r\n\n\xff\x01\n0123456789\nlast", 25));
    Close();
    EXPECT_EQ(Rest(), (std::vector<std::string>{std::string("a\0b", 3), "\r", "", "\xff\x01",
                                                "0123456789", "last"}));
}

TEST_F(LineReaderTest, CutsLongLinesHoweverTheyCome) {
    std::string line;
    Write("0123456789ab");
    ASSERT_EQ(reader_.Next(line, true), Arrival::kLine);
    EXPECT_EQ(line, "0123456789a");
    ASSERT_EQ(reader_.Next(line, false), Arrival::kNothing);
    Write("cdefghijklmnopqrstuvw");
    ASSERT_EQ(reader_.Next(line, false), Arrival::kNothing);
    Write("x\ny\n0123456789abc\nz\n" + std::string(50000, 'x'));
    Close();
    EXPECT_EQ(Rest(), (std::vector<std::string>{"y", "0123456789a", "z", "xxxxxxxxxxx"}));
}

TEST_F(LineReaderTest, GivesWhatWasReadWhenStopped) {
    std::string line;
    Write("a\nb\nc");
    ASSERT_EQ(reader_.Next(line, true), Arrival::kLine);
    Write("not read any more\n");
    raise(SIGTERM);
    EXPECT_EQ(Rest(), (std::vector<std::string>{"b", "c"}));
}

TEST_F(LineReaderTest, DoesNotWaitUnlessAsked) {
    std::string line;
    EXPECT_EQ(reader_.Next(line, false), Arrival::kNothing);
    Write("half");
    EXPECT_EQ(reader_.Next(line, false), Arrival::kNothing);
    Write(" and half\n");
    EXPECT_EQ(reader_.Next(line, false), Arrival::kLine);
    EXPECT_EQ(line,
              "half and h"
              "a");
}

}  // namespace
}  // namespace serverlog::program
