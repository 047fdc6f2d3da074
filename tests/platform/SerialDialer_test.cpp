#include "platform/SerialDialer.h"

#include <gtest/gtest.h>

#include <unistd.h>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <memory>
#include <string>

#include "tests/support/EventLoop.h"
#include "tests/support/Pty.h"

namespace kestrix::platform {
namespace {

using testing::Pty;
using testing::spinUntil;

class SerialDialerTest : public ::testing::Test {
  protected:
    bool dial(SerialDialer& dialer) {
        dialer.dial([this](Dialer::Outcome outcome) {
            channel_ = std::move(outcome.channel);
            problem_ = outcome.problem;
            step_ = outcome.step;
        });
        if (!channel_) return false;
        channel_->events.bytesAvailable = [this] { readAll(); };
        channel_->events.closed = [this](const std::string& why) {
            closed_ = why;
            ++closes_;
        };
        return true;
    }
    void readAll() {
        std::array<std::uint8_t, 4096> buffer;
        std::ptrdiff_t count = 0;
        while ((count = channel_->read(buffer.data(), buffer.size())) > 0)
            received_.append(reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(count));
    }
    std::unique_ptr<ByteChannel> channel_;
    std::string problem_;
    FailedStep step_ = FailedStep::None;
    std::string closed_;
    int closes_ = 0;
    std::string received_;
};

TEST_F(SerialDialerTest, BytesGoBothWays) {
    const Pty pty;
    SerialDialer dialer(QString::fromStdString(pty.name()), 9600);
    ASSERT_TRUE(dial(dialer)) << problem_;
    ASSERT_EQ(write(pty.master(), "hello", 5), 5);
    EXPECT_TRUE(spinUntil([this] { return received_ == "hello"; }));
    EXPECT_EQ(channel_->write(std::vector<std::uint8_t>{'o', 'k'}), 2);
    char answer[2] = {};
    bool sent = false;
    channel_->events.spaceAvailable = [&] { sent = true; };
    ASSERT_TRUE(spinUntil([&] { return sent; }));
    EXPECT_EQ(read(pty.master(), answer, 2), 2);
    EXPECT_EQ(std::string(answer, 2), "ok");
}

TEST_F(SerialDialerTest, AHangUpIsAClosedChannelOnce) {
    Pty pty;
    SerialDialer dialer(QString::fromStdString(pty.name()), 9600);
    ASSERT_TRUE(dial(dialer)) << problem_;
    pty.hangUp();
    EXPECT_TRUE(spinUntil([this] { return closes_ > 0; }));
    for (int turn = 0; turn < 20; ++turn) QCoreApplication::processEvents();
    EXPECT_EQ(closes_, 1);
    EXPECT_TRUE(closed_ == "the port has hung up" || closed_ == "the port has gone") << closed_;
}

// The port's own reason for a hang-up is the system's message of whatever failed before it.
TEST_F(SerialDialerTest, TheReasonOfAHangUpIsNotThatOfAnOlderFailure) {
    Pty pty;
    SerialDialer dialer(QString::fromStdString(pty.name()), 9600);
    ASSERT_TRUE(dial(dialer)) << problem_;
    pty.hangUp();
    errno = ENOSPC;
    EXPECT_TRUE(spinUntil([this] { return closes_ > 0; }));
    EXPECT_EQ(closed_.find("No "), std::string::npos) << closed_;
}

TEST_F(SerialDialerTest, TheBytesBeforeAHangUpAreNotLost) {
    Pty pty;
    SerialDialer dialer(QString::fromStdString(pty.name()), 9600);
    ASSERT_TRUE(dial(dialer)) << problem_;
    channel_->events.bytesAvailable = [] {};  // nobody reads yet
    ASSERT_EQ(write(pty.master(), "hello", 5), 5);
    ASSERT_TRUE(spinUntil([this] { return channel_->bytesAvailable() == 5; }));
    pty.hangUp();
    EXPECT_TRUE(spinUntil([this] { return closes_ > 0; }));
    readAll();
    EXPECT_EQ(received_, "hello");
}

TEST_F(SerialDialerTest, ARelativeNameIsMadeAbsoluteOnce) {
    const QTemporaryDir folder;
    const Pty pty;
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QFile::link(QString::fromStdString(pty.name()), folder.filePath(QStringLiteral("tester"))));
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    SerialDialer dialer(QStringLiteral("tester"), 9600);
    ASSERT_TRUE(QDir::setCurrent(before));
    EXPECT_TRUE(dial(dialer)) << problem_;
}

TEST_F(SerialDialerTest, ANodeWhoseRightsComeLaterIsReportedAgain) {
    const QTemporaryDir folder;
    const QString node = folder.filePath(QStringLiteral("node"));
    SerialDialer dialer(node, 9600);
    int back = 0;
    dialer.peerMayBeBack = [&] { ++back; };
    ASSERT_TRUE(QFile(node).open(QIODevice::WriteOnly));
    EXPECT_TRUE(spinUntil([&] { return back == 1; }));
    ASSERT_TRUE(QFile::setPermissions(node, QFile::ReadOwner | QFile::ExeOwner));
    EXPECT_TRUE(spinUntil([&] { return back == 2; }));
}

TEST_F(SerialDialerTest, AMissingNodeIsAFailedDial) {
    SerialDialer dialer(QStringLiteral("/dev/kestrix-no-such-port"), 9600);
    EXPECT_FALSE(dial(dialer));
    EXPECT_EQ(problem_, "no such port");
    EXPECT_EQ(step_, FailedStep::Missing);
}

TEST_F(SerialDialerTest, ABusyPortIsAFailedDial) {
    const Pty pty;
    SerialDialer first(QString::fromStdString(pty.name()), 9600);
    ASSERT_TRUE(dial(first));
    const std::unique_ptr<ByteChannel> held = std::move(channel_);
    SerialDialer second(QString::fromStdString(pty.name()), 9600);
    EXPECT_FALSE(dial(second));
    EXPECT_EQ(problem_, "the port is busy");
    EXPECT_EQ(step_, FailedStep::Busy);
}

TEST_F(SerialDialerTest, WhatIsNoSerialPortIsAFailedDial) {
    SerialDialer dialer(QStringLiteral("/dev/null"), 9600);
    EXPECT_FALSE(dial(dialer));
    EXPECT_FALSE(problem_.empty());
}

TEST_F(SerialDialerTest, ANodeThatAppearsIsReportedAtOnce) {
    const QTemporaryDir folder;
    const Pty pty;
    const QString link = folder.filePath(QStringLiteral("tester"));
    SerialDialer dialer(link, 9600);
    int back = 0;
    dialer.peerMayBeBack = [&] { ++back; };
    EXPECT_FALSE(dial(dialer));
    ASSERT_TRUE(QFile::link(QString::fromStdString(pty.name()), link));
    EXPECT_TRUE(spinUntil([&] { return back > 0; }));
    EXPECT_TRUE(dial(dialer)) << problem_;
}

}  // namespace
}  // namespace kestrix::platform
