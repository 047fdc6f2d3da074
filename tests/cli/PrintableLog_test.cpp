#include "apps/common/PrintableLog.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <string>

namespace kestrix::app {
namespace {

class FullPipe : public ::testing::Test {
  protected:
    FullPipe() {
        EXPECT_EQ(pipe2(ends_.data(), O_CLOEXEC), 0);
        EXPECT_GT(fcntl(ends_[1], F_SETPIPE_SZ, 4096), 0);
    }
    ~FullPipe() override {
        for (const int end : ends_) close(end);
    }
    std::string taken() {
        std::string text(8192, '\0');
        const ssize_t count = read(ends_[0], text.data(), text.size());
        text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return text;
    }

    std::array<int, 2> ends_{};
    unsigned long lost_ = 0;
};

TEST_F(FullPipe, ALogLineDoesNotWaitForItsReaderAndTheNextSaysHowManyWereLost) {
    writeUnlessFull(ends_[1], std::string(3000, 'x'), lost_);
    for (int i = 0; i < 3; ++i) writeUnlessFull(ends_[1], "no room", lost_);
    EXPECT_EQ(lost_, 3U);
    EXPECT_EQ(taken(), std::string(3000, 'x') + '\n');
    writeUnlessFull(ends_[1], "room", lost_);
    writeUnlessFull(ends_[1], "more", lost_);
    EXPECT_EQ(taken(), "3 lines lost\nroom\n");
    EXPECT_EQ(lost_, 1U);
}

TEST_F(FullPipe, AnEndlessLineIsCutToWhatThePipeTakesAtOnce) {
    writeUnlessFull(ends_[1], std::string(100'000, 'x'), lost_);
    EXPECT_EQ(taken(), std::string(4096 - 64, 'x') + '\n');
}

}  // namespace
}  // namespace kestrix::app
