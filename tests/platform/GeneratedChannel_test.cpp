#include "platform/GeneratedChannel.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/ManualScheduler.h"

namespace kestrix::platform {
namespace {

using std::chrono::milliseconds;
using Bytes = std::vector<std::uint8_t>;
using Piece = ByteProducer::Piece;

struct ListProducer final : ByteProducer {
    explicit ListProducer(std::deque<Piece>& list) : pieces(list) {}
    bool next(Piece& piece) override {
        if (pieces.empty()) return false;
        piece = pieces.front();
        pieces.pop_front();
        return true;
    }
    std::deque<Piece>& pieces;
};

struct EndlessProducer final : ByteProducer {
    bool next(Piece& piece) override {
        piece = {milliseconds(0), Bytes(36, 1), false};
        return true;
    }
};

class GeneratedChannelTest : public ::testing::Test {
  protected:
    void dial() {
        dialer_.dial([this](Dialer::Outcome outcome) {
            channel_ = std::move(outcome.channel);
            problem_ = outcome.problem;
        });
        if (!channel_) return;
        channel_->events.bytesAvailable = [this] {
            ++events_;
            if (reads_) readAll();
        };
        channel_->events.closed = [this](const std::string& why) { closed_ = why; };
    }
    void readAll() {
        std::array<std::uint8_t, 64> buffer;
        std::ptrdiff_t count = 0;
        while ((count = channel_->read(buffer.data(), buffer.size())) > 0)
            received_.insert(received_.end(), buffer.begin(), buffer.begin() + count);
    }

    testing::ManualScheduler scheduler_;
    std::deque<Piece> pieces_;
    int producers_ = 0;
    GeneratedDialer dialer_{[this](std::string& problem) -> std::unique_ptr<ByteProducer> {
                                if (refuses_) {
                                    problem = "nothing to play";
                                    return nullptr;
                                }
                                ++producers_;
                                if (endless_) return std::make_unique<EndlessProducer>();
                                return std::make_unique<ListProducer>(pieces_);
                            },
                            scheduler_};
    std::unique_ptr<ByteChannel> channel_;
    bool refuses_ = false;
    bool endless_ = false;
    bool reads_ = true;
    int events_ = 0;
    std::string problem_;
    std::string closed_;
    Bytes received_;
};

TEST_F(GeneratedChannelTest, PiecesComeAtTheirTimes) {
    pieces_ = {{milliseconds(0), {1}}, {milliseconds(250), {2}}, {milliseconds(250), {3}}};
    dial();
    scheduler_.runDue();
    EXPECT_EQ(received_, Bytes{1});
    scheduler_.advance(milliseconds(249));
    EXPECT_EQ(received_, Bytes{1});
    scheduler_.advance(milliseconds(1));
    EXPECT_EQ(received_, (Bytes{1, 2}));
    scheduler_.advance(milliseconds(250));
    EXPECT_EQ(received_, (Bytes{1, 2, 3}));
}

TEST_F(GeneratedChannelTest, NothingComesFromInsideTheDial) {
    pieces_ = {{milliseconds(0), {1}}};
    dial();
    EXPECT_EQ(events_, 0);
}

TEST_F(GeneratedChannelTest, TheEndOfAllPiecesClosesTheChannel) {
    pieces_ = {{milliseconds(0), {1}}};
    dial();
    scheduler_.advance(milliseconds(1));
    EXPECT_EQ(received_, Bytes{1});
    EXPECT_EQ(closed_, "the end of what there is to play");
}

TEST_F(GeneratedChannelTest, AfterTheEndTheNextDialPlaysFromTheBeginning) {
    dial();
    scheduler_.advance(milliseconds(1));
    EXPECT_EQ(producers_, 1);
    pieces_ = {{milliseconds(0), {9}}};
    dial();
    scheduler_.advance(milliseconds(1));
    EXPECT_EQ(producers_, 2);
    EXPECT_EQ(received_, Bytes{9});
}

TEST_F(GeneratedChannelTest, APieceThatClosesEndsTheChannelBehindItsBytesAndTheNextDialGoesOn) {
    pieces_ = {{milliseconds(0), {1}, true}, {milliseconds(0), {2}}, {milliseconds(10'000), {3}}};
    dial();
    scheduler_.runDue();
    EXPECT_EQ(received_, Bytes{1});
    EXPECT_EQ(closed_, "the tester was switched off");
    dial();
    scheduler_.runDue();
    EXPECT_EQ(received_, (Bytes{1, 2}));
    EXPECT_EQ(producers_, 1);
}

TEST_F(GeneratedChannelTest, WhileTheTesterIsOffDialsFail) {
    pieces_ = {{milliseconds(0), {1}, true}, {milliseconds(2000), {}}, {milliseconds(250), {2}}};
    dial();
    scheduler_.runDue();
    scheduler_.advance(milliseconds(1999));
    dial();
    EXPECT_EQ(channel_, nullptr);
    EXPECT_EQ(problem_, "the tester is switched off");
    scheduler_.advance(milliseconds(1));
    dial();
    ASSERT_NE(channel_, nullptr);
    scheduler_.advance(milliseconds(250));
    EXPECT_EQ(received_, (Bytes{1, 2}));
}

TEST_F(GeneratedChannelTest, AChannelThatIsGivenUpLosesNoPieceForTheNext) {
    pieces_ = {{milliseconds(0), {1}}, {milliseconds(100), {2}}};
    dial();
    scheduler_.runDue();
    channel_->close();
    scheduler_.advance(milliseconds(1000));
    EXPECT_EQ(received_, Bytes{1});
    dial();
    scheduler_.runDue();
    EXPECT_EQ(received_, (Bytes{1, 2}));
}

TEST_F(GeneratedChannelTest, OneTurnGivesNoMoreThanTheBufferHolds) {
    endless_ = true;
    reads_ = false;
    dial();
    scheduler_.runDue();
    EXPECT_EQ(events_, 1);
    EXPECT_GE(channel_->bytesAvailable(), ByteChannel::kBufferLimit);
    EXPECT_LT(channel_->bytesAvailable(), ByteChannel::kBufferLimit + 36);
}

struct EmptyProducer final : ByteProducer {
    bool next(Piece& piece) override {
        piece = {};
        ++pieces;
        return true;
    }
    int pieces = 0;
};

// Each turn ends, so the event loop goes on and everything else gets its turn.
TEST_F(GeneratedChannelTest, PiecesWithoutBytesAndWithoutAWaitHoldNothingUp) {
    auto producer = std::make_unique<EmptyProducer>();
    const EmptyProducer& made = *producer;
    GeneratedDialer dialer([&](std::string&) { return std::move(producer); }, scheduler_);
    std::unique_ptr<ByteChannel> channel;
    dialer.dial([&](Dialer::Outcome outcome) { channel = std::move(outcome.channel); });
    for (int turn = 0; turn < 10; ++turn) {
        const int before = made.pieces;
        ASSERT_TRUE(scheduler_.runOne());
        EXPECT_LT(made.pieces - before, 10'000);
    }
    channel->close();
    EXPECT_FALSE(scheduler_.runOne());
}

TEST_F(GeneratedChannelTest, AFullBufferWaitsForItsReaderWithoutATimer) {
    endless_ = true;
    reads_ = false;
    dial();
    scheduler_.runDue();
    EXPECT_EQ(scheduler_.pending(), 0U);
    std::vector<std::uint8_t> buffer(1000);
    EXPECT_EQ(channel_->read(buffer.data(), buffer.size()), 1000);
    EXPECT_EQ(scheduler_.pending(), 1U);
    scheduler_.runDue();
    EXPECT_GE(channel_->bytesAvailable(), ByteChannel::kBufferLimit);
}

TEST_F(GeneratedChannelTest, AProducerThatCannotBeMadeIsAFailedDial) {
    refuses_ = true;
    dial();
    EXPECT_EQ(channel_, nullptr);
    EXPECT_EQ(problem_, "nothing to play");
}

TEST_F(GeneratedChannelTest, WhatIsWrittenIsTakenAndForgotten) {
    pieces_ = {{milliseconds(0), {1}}};
    dial();
    EXPECT_TRUE(channel_->hasSpaceAvailable());
    EXPECT_EQ(channel_->write(Bytes(10, 1)), 10);
    channel_->close();
    EXPECT_FALSE(channel_->hasSpaceAvailable());
    EXPECT_EQ(channel_->write(Bytes(10, 1)), -1);
    std::uint8_t byte = 0;
    EXPECT_EQ(channel_->read(&byte, 1), -1);
}

}  // namespace
}  // namespace kestrix::platform
