// A tester that goes away and comes back, again and again, on real channels.
#include <gtest/gtest.h>

#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>

#include <memory>
#include <string>

#include "tests/flow/LinkFixture.h"
#include "tests/support/EventLoop.h"
#include "tests/support/FrameBuilder.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/ProcessState.h"
#include "tests/support/Pty.h"

namespace kestrix {
namespace {

using std::chrono::milliseconds;
using testing::FrameBuilder;
using testing::spinUntil;

constexpr int kRounds = 100;
constexpr std::size_t kTolerance = 16'384;  // bytes that caches of the platform may still take

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
}

FrameBuilder::Bytes frameOf(int round) {
    return FrameBuilder('1').reading(1, static_cast<std::uint16_t>(round + 1), 0).bytes();
}

// What must be the same after many rounds as after a few.
struct Leaks {
    std::size_t descriptors = testing::openDescriptors();
    std::size_t bytes = testing::allocatedBytes();

    void expectNoneSince(const Leaks& before) const {
        EXPECT_EQ(descriptors, before.descriptors);
        EXPECT_LE(bytes, before.bytes + kTolerance);
    }
};

class Reconnect : public testing::LinkFixture {
  protected:
    // Waits for the record of this round and checks that it is the right one.
    void expectRecord(int round) {
        ASSERT_TRUE(spinUntil([&] {
            scheduler_.runDue();
            return records_ == static_cast<std::size_t>(round) + 1;
        })) << "round "
            << round;
        ASSERT_EQ(last_.strValue1, std::to_string(round + 1));
        ASSERT_TRUE(connected());
        ASSERT_EQ(defaults_.integerForKey(QStringLiteral("bluestate")), 1);
    }
    void expectGone() {
        ASSERT_TRUE(spinUntil([&] { return !connected(); }));
        ASSERT_EQ(defaults_.integerForKey(QStringLiteral("bluestate")), 0);
        ASSERT_EQ(connect_.measuredevice(), nullptr);
    }
    Leaks atRoundTen_;
};

TEST_F(Reconnect, ATcpTesterThatComesBackAHundredTimes) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const quint16 port = server.serverPort();
    start("tcp://127.0.0.1:" + std::to_string(port));
    for (int round = 0; round < kRounds; ++round) {
        testing::forgetLogLines();
        if (round == 10) atRoundTen_ = Leaks();
        scheduler_.advance(milliseconds(500));
        ASSERT_TRUE(spinUntil([&] { return server.hasPendingConnections(); })) << "round " << round;
        const std::unique_ptr<QTcpSocket> tester(server.nextPendingConnection());
        const auto frame = frameOf(round);
        tester->write(reinterpret_cast<const char*>(frame.data()), static_cast<qint64>(frame.size()));
        ASSERT_NO_FATAL_FAILURE(expectRecord(round));
        tester->abort();
        ASSERT_NO_FATAL_FAILURE(expectGone());
        scheduler_.runDue();
    }
    EXPECT_EQ(stateLog_, "0" + repeated("110", kRounds));
    EXPECT_EQ(waits_, kRounds);
    Leaks().expectNoneSince(atRoundTen_);
}

TEST_F(Reconnect, ATcpTesterWhoseServerIsAwayForAWhile) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const quint16 port = server.serverPort();
    start("tcp://127.0.0.1:" + std::to_string(port));
    const auto& source = *manager_.sources().front();
    for (int round = 0; round < 5; ++round) {
        while (source.state() == platform::SearchState::Waiting) scheduler_.advance(milliseconds(100));
        ASSERT_TRUE(spinUntil([&] { return server.hasPendingConnections(); }));
        const std::unique_ptr<QTcpSocket> tester(server.nextPendingConnection());
        const auto frame = frameOf(round);
        tester->write(reinterpret_cast<const char*>(frame.data()), static_cast<qint64>(frame.size()));
        ASSERT_NO_FATAL_FAILURE(expectRecord(round));
        server.close();
        tester->abort();
        ASSERT_NO_FATAL_FAILURE(expectGone());
        // Ten seconds without anybody there: every dial is refused.
        int refusals = 0;
        for (int i = 0; i < 20; ++i) {
            scheduler_.advance(milliseconds(500));
            ASSERT_TRUE(spinUntil([&] { return source.state() == platform::SearchState::Waiting; }));
            if (source.problem() == "Connection refused") ++refusals;
        }
        EXPECT_GT(refusals, 0);
        ASSERT_TRUE(server.listen(QHostAddress::LocalHost, port));
    }
    EXPECT_EQ(stateLog_, "0" + repeated("110", 5));
}

// After a drop the link is back within ten seconds of the tester's return, whenever that is.
TEST_F(Reconnect, TheLinkIsBackWithinTenSecondsOfTheTestersReturn) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const quint16 port = server.serverPort();
    server.close();
    start("tcp://127.0.0.1:" + std::to_string(port));
    const auto& source = *manager_.sources().front();
    for (int i = 0; i < 600; ++i) {  // a minute away
        ASSERT_TRUE(spinUntil([&] { return source.state() == platform::SearchState::Waiting; }));
        scheduler_.advance(milliseconds(100));
    }
    ASSERT_TRUE(spinUntil([&] { return source.state() == platform::SearchState::Waiting; }));
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost, port));
    const auto back = scheduler_.now();
    while (source.state() == platform::SearchState::Waiting) scheduler_.advance(milliseconds(100));
    ASSERT_TRUE(spinUntil([&] { return server.hasPendingConnections(); }));
    const std::unique_ptr<QTcpSocket> tester(server.nextPendingConnection());
    const auto frame = frameOf(0);
    tester->write(reinterpret_cast<const char*>(frame.data()), static_cast<qint64>(frame.size()));
    ASSERT_NO_FATAL_FAILURE(expectRecord(0));
    EXPECT_LE(scheduler_.now() - back, milliseconds(10'000));
}

TEST_F(Reconnect, ASerialTesterThatComesBackAHundredTimes) {
    const QString link = folder_.filePath(QStringLiteral("tester"));
    start("serial:" + link.toStdString() + "?baud=9600");
    for (int round = 0; round < kRounds; ++round) {
        testing::forgetLogLines();
        if (round == 10) atRoundTen_ = Leaks();
        testing::Pty pty;
        ASSERT_TRUE(QFile::link(QString::fromStdString(pty.name()), link));
        // The node that appears is dialled at once: the time stands still here.
        const auto& source = *manager_.sources().front();
        ASSERT_TRUE(spinUntil([&] { return source.state() == platform::SearchState::Listening; }))
            << source.problem();
        ASSERT_TRUE(pty.send(frameOf(round)));
        ASSERT_NO_FATAL_FAILURE(expectRecord(round));
        ASSERT_TRUE(QFile::remove(link));
        pty.hangUp();
        ASSERT_NO_FATAL_FAILURE(expectGone());
        scheduler_.runDue();
    }
    EXPECT_EQ(stateLog_, "0" + repeated("110", kRounds));
    EXPECT_EQ(waits_, kRounds);
    Leaks().expectNoneSince(atRoundTen_);
}

TEST_F(Reconnect, ATesterThatFallsSilentIsGoneAfterThreeSeconds) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    start("tcp://127.0.0.1:" + std::to_string(server.serverPort()));
    ASSERT_TRUE(spinUntil([&] { return server.hasPendingConnections(); }));
    const std::unique_ptr<QTcpSocket> tester(server.nextPendingConnection());
    const auto frame = frameOf(0);
    tester->write(reinterpret_cast<const char*>(frame.data()), static_cast<qint64>(frame.size()));
    ASSERT_NO_FATAL_FAILURE(expectRecord(0));
    scheduler_.advance(milliseconds(2999));
    EXPECT_TRUE(connected());
    scheduler_.advance(milliseconds(1));
    EXPECT_FALSE(connected());
    EXPECT_EQ(stateLog_, "0110");
}

// Its beginning and the next tester's would make a reading that nobody has measured.
TEST_F(Reconnect, HalfAFrameOfATesterThatWentIsNoPartOfWhatComesNext) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    start("tcp://127.0.0.1:" + std::to_string(server.serverPort()));
    const auto bytes = [](int round, std::size_t count) {
        const auto frame = frameOf(round);
        return QByteArray(reinterpret_cast<const char*>(frame.data()), static_cast<qsizetype>(count));
    };
    const QByteArray first = bytes(0, 36) + bytes(1, 20);
    const QByteArray second = bytes(2, 36) + bytes(3, 36);
    std::uint64_t records = 0;
    for (const QByteArray& sent : {first, second}) {
        scheduler_.advance(milliseconds(500));
        ASSERT_TRUE(spinUntil([&] { return server.hasPendingConnections(); }));
        const std::unique_ptr<QTcpSocket> tester(server.nextPendingConnection());
        tester->write(sent);
        records += static_cast<std::uint64_t>(sent.size() / 36);
        ASSERT_TRUE(spinUntil([&] {
            scheduler_.runDue();
            return records_ == records;
        }));
        tester->abort();
        ASSERT_NO_FATAL_FAILURE(expectGone());
    }
    EXPECT_EQ(records_, 3U);
    EXPECT_EQ(last_.strValue1, "4");
    EXPECT_EQ(connect_.totalBytesRead(), 3U * 36U);
}

}  // namespace
}  // namespace kestrix
