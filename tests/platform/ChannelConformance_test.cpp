// Every kind of channel and dialer, held to the contract in src/platform/ByteChannel.h and
// src/platform/Dialer.h.
#include <gtest/gtest.h>

#include <QCoreApplication>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/DialingSource.h"
#include "tests/platform/ChannelRigs.h"
#include "tests/support/EventLoop.h"

namespace kestrix::platform {
namespace {

using std::chrono::milliseconds;
using Bytes = ChannelRig::Bytes;

// A generated channel may go past the limit by its last piece.
constexpr std::size_t kMostWaiting = ByteChannel::kBufferLimit + 4096;

class ChannelConformance : public ::testing::TestWithParam<ChannelKind> {
  protected:
    void open() {
        rig_->dialer().dial([this](Dialer::Outcome outcome) {
            ++answers_;
            channel_ = std::move(outcome.channel);
            problem_ = outcome.problem;
            if (channel_) listen();
            if (channel_ && events_ > 0) ADD_FAILURE() << "an event came before the dial was answered";
        });
        ASSERT_TRUE(turnUntil([this] { return answers_ > 0; }));
        ASSERT_NE(channel_, nullptr) << problem_;
    }
    void listen() {
        channel_->events.bytesAvailable = [this] {
            expectOutside();
            ++events_;
            if (onBytes_) onBytes_();
        };
        channel_->events.spaceAvailable = [this] {
            expectOutside();
            ++spaces_;
        };
        channel_->events.closed = [this](const std::string& why) {
            expectOutside();
            EXPECT_FALSE(why.empty());
            ++closes_;
        };
    }
    void expectOutside() { EXPECT_FALSE(inside_) << "an event came from inside a call"; }

    std::ptrdiff_t read(std::uint8_t* buffer, std::size_t max) {
        inside_ = true;
        const std::ptrdiff_t count = channel_->read(buffer, max);
        inside_ = false;
        return count;
    }
    std::ptrdiff_t write(const Bytes& bytes) {
        inside_ = true;
        const std::ptrdiff_t count = channel_->write(bytes);
        inside_ = false;
        return count;
    }
    void close() {
        inside_ = true;
        channel_->close();
        inside_ = false;
    }
    void readAll() {
        std::array<std::uint8_t, 1000> buffer;
        for (std::ptrdiff_t count = 0; (count = read(buffer.data(), buffer.size())) > 0;)
            received_.insert(received_.end(), buffer.begin(), buffer.begin() + count);
    }
    bool turnUntil(const std::function<bool()>& condition) {
        return testing::spinUntil([&] {
            if (condition()) return true;
            rig_->turn();
            QMetaObject::invokeMethod(
                qApp, [] {}, Qt::QueuedConnection);  // so that the loop does not sleep
            return condition();
        });
    }
    void turns(int count) {
        for (int i = 0; i < count; ++i) rig_->turn();
    }
    static void expectSame(const Bytes& expected, const Bytes& actual) {
        EXPECT_EQ(expected.size(), actual.size());
        EXPECT_TRUE(expected == actual);
    }

    std::unique_ptr<ChannelRig> rig_ = GetParam().make();
    std::unique_ptr<ByteChannel> channel_;
    std::string problem_;
    int answers_ = 0;
    int events_ = 0;
    int spaces_ = 0;
    int closes_ = 0;
    bool inside_ = false;
    std::function<void()> onBytes_;
    Bytes received_;
};

TEST_P(ChannelConformance, BytesComeInOrderAndOnce) {
    const Bytes sent = rig_->plan(3000, true);
    onBytes_ = [this] { readAll(); };
    open();
    ASSERT_TRUE(turnUntil([&] { return received_.size() >= sent.size(); }));
    expectSame(sent, received_);
}

TEST_P(ChannelConformance, AReadOfNothingIsZeroAndDoesNotEndTheChannel) {
    rig_->plan(0, false);
    open();
    readAll();
    std::uint8_t byte = 0;
    EXPECT_EQ(read(&byte, 0), 0);
    readAll();
    EXPECT_EQ(read(&byte, 1), 0);
    EXPECT_EQ(closes_, 0);
}

TEST_P(ChannelConformance, TheEndComesOnceBehindTheBytesWhichCanStillBeRead) {
    const Bytes sent = rig_->plan(1500, true);
    open();
    ASSERT_TRUE(turnUntil([&] { return channel_->bytesAvailable() == sent.size(); }));
    rig_->end();
    ASSERT_TRUE(turnUntil([this] { return closes_ > 0; }));
    EXPECT_GE(events_, 1);
    readAll();
    expectSame(sent, received_);
    std::uint8_t byte = 0;
    EXPECT_EQ(read(&byte, 1), -1);
    EXPECT_FALSE(channel_->hasSpaceAvailable());
    const int events = events_;
    turns(20);
    EXPECT_EQ(closes_, 1);
    EXPECT_EQ(events_, events);
}

TEST_P(ChannelConformance, AFloodWaitsInBoundsAndArrivesWholeOnceItIsRead) {
    const Bytes sent = rig_->plan(600'000, true);
    open();
    turns(200);
    EXPECT_LE(channel_->bytesAvailable(), kMostWaiting);
    onBytes_ = [this] {
        EXPECT_LE(channel_->bytesAvailable(), kMostWaiting) << "more than one turn may take";
        readAll();
    };
    readAll();
    ASSERT_TRUE(turnUntil([&] { return received_.size() >= sent.size(); }));
    expectSame(sent, received_);
}

TEST_P(ChannelConformance, SpaceMeansProgressAndAFarEndThatDoesNotReadStopsTheWriter) {
    rig_->plan(0, false);
    open();
    const Bytes much(5000, 'x');
    std::size_t taken = 0;
    const std::size_t most = GetParam().swallows ? 1'000'000 : 64'000'000;
    for (int turnsWithoutSpace = 0; turnsWithoutSpace < 50 && taken < most;) {
        if (!channel_->hasSpaceAvailable()) {
            EXPECT_EQ(write(much), 0);
            ++turnsWithoutSpace;
        } else {
            const std::ptrdiff_t count = write(much);
            ASSERT_GT(count, 0) << "space, but no progress";
            taken += static_cast<std::size_t>(count);
            turnsWithoutSpace = 0;
        }
        rig_->turn();
    }
    if (GetParam().swallows) {
        EXPECT_GE(taken, most);
        return;
    }
    EXPECT_LT(taken, most);
    const int spaces = spaces_;
    rig_->drain();
    ASSERT_TRUE(turnUntil([&] { return spaces_ > spaces && channel_->hasSpaceAvailable(); }));
    EXPECT_GT(write(much), 0);
}

TEST_P(ChannelConformance, ADialThatIsCancelledAnswersNoMore) {
    rig_->plan(100, true);
    int answers = 0;
    rig_->dialer().dial([&](const Dialer::Outcome&) { ++answers; });
    rig_->dialer().cancel();
    const int atOnce = answers;  // a dialer may answer inside the call
    turns(50);
    EXPECT_EQ(answers, atOnce);
    rig_->dialer().cancel();  // harmless
}

TEST_P(ChannelConformance, AChannelOutlivesItsDialer) {
    const Bytes sent = rig_->plan(3000, true);
    onBytes_ = [this] { readAll(); };
    open();
    rig_->dialer().cancel();
    rig_->forgetDialer();
    ASSERT_TRUE(turnUntil([&] { return received_.size() >= sent.size(); }));
    expectSame(sent, received_);
}

TEST_P(ChannelConformance, AnEventMayCloseTheChannelAndThenNothingComes) {
    rig_->plan(3000, true);
    onBytes_ = [this] { close(); };
    open();
    ASSERT_TRUE(turnUntil([this] { return events_ > 0; }));
    rig_->end();
    turns(50);
    EXPECT_EQ(events_, 1);
    EXPECT_EQ(closes_, 0);
}

TEST_P(ChannelConformance, AnEventMayReplaceItsOwnFunction) {
    const Bytes sent = rig_->plan(3000, true);
    open();
    bool replaced = false;
    channel_->events.bytesAvailable = [this, &replaced, text = std::string(100, 'x')] {
        channel_->events.bytesAvailable = [this] { readAll(); };
        replaced = text.size() == 100;
        readAll();
    };
    ASSERT_TRUE(turnUntil([&] { return received_.size() >= sent.size(); }));
    EXPECT_TRUE(replaced);
}

TEST_P(ChannelConformance, AClosedChannelReadsAndWritesNothing) {
    rig_->plan(100, true);
    open();
    close();
    close();
    std::uint8_t byte = 0;
    EXPECT_EQ(read(&byte, 1), -1);
    EXPECT_EQ(write(Bytes{1}), -1);
    EXPECT_EQ(channel_->bytesAvailable(), 0U);
    EXPECT_FALSE(channel_->hasSpaceAvailable());
}

TEST_P(ChannelConformance, WhatComesWhileTheMainThreadIsBusyForFourSecondsIsThereBehindIt) {
    const Bytes sent = rig_->plan(3000, true);
    onBytes_ = [this] { readAll(); };
    open();
    rig_->stall(milliseconds(4000));
    ASSERT_TRUE(turnUntil([&] { return received_.size() >= sent.size(); }));
    expectSame(sent, received_);
}

std::string nameOf(const ::testing::TestParamInfo<ChannelKind>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Every, ChannelConformance, ::testing::ValuesIn(kChannelKinds), nameOf);

}  // namespace
}  // namespace kestrix::platform
