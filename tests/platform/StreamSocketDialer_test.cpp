#include "platform/StreamSocketDialer.h"

#include <gtest/gtest.h>

#include <QTcpServer>
#include <QTcpSocket>

#include <memory>
#include <string>

#include "tests/support/EventLoop.h"

namespace kestrix::platform {
namespace {

using testing::spinUntil;

class TcpDialer : public StreamSocketDialer<QTcpSocket> {
  public:
    TcpDialer(const QString& host, quint16 port)
        : StreamSocketDialer([host, port](QTcpSocket& socket) { socket.connectToHost(host, port); }) {}
};

class TcpDialerTest : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(server_.listen(QHostAddress::LocalHost)); }

    void dial(TcpDialer& dialer) {
        dialer.dial([this](Dialer::Outcome outcome) {
            answered_ = true;
            channel_ = std::move(outcome.channel);
            problem_ = outcome.problem;
        });
    }
    void readAll() {
        std::array<std::uint8_t, 4096> buffer;
        std::ptrdiff_t count = 0;
        while ((count = channel_->read(buffer.data(), buffer.size())) > 0)
            received_.append(reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(count));
    }

    QTcpServer server_;
    std::unique_ptr<QTcpSocket> peer_;
    bool answered_ = false;
    std::unique_ptr<ByteChannel> channel_;
    std::string problem_;
    std::string closed_;
    std::string received_;
    int spaces_ = 0;
};

class TcpDialerConnected : public TcpDialerTest {
  protected:
    void SetUp() override {
        TcpDialerTest::SetUp();
        real_ = std::make_unique<TcpDialer>(QStringLiteral("127.0.0.1"), server_.serverPort());
        dial(*real_);
        ASSERT_TRUE(spinUntil([this] { return answered_ && server_.hasPendingConnections(); }));
        ASSERT_NE(channel_, nullptr) << problem_;
        peer_.reset(server_.nextPendingConnection());
        channel_->events.bytesAvailable = [this] { readAll(); };
        channel_->events.spaceAvailable = [this] { ++spaces_; };
        channel_->events.closed = [this](const std::string& why) { closed_ = why; };
    }
    void TearDown() override { channel_.reset(); }
    std::unique_ptr<TcpDialer> real_;
};

TEST_F(TcpDialerConnected, BytesArrive) {
    peer_->write("hello");
    EXPECT_TRUE(spinUntil([this] { return received_ == "hello"; }));
}

TEST_F(TcpDialerConnected, AMegabyteArrivesWhole) {
    const QByteArray sent(1'000'000, 'x');
    peer_->write(sent);
    EXPECT_TRUE(spinUntil([this] { return received_.size() == 1'000'000; }));
}

TEST_F(TcpDialerConnected, BytesAreSentAndSpaceIsReported) {
    EXPECT_EQ(channel_->write(std::vector<std::uint8_t>{'a', 'b'}), 2);
    EXPECT_TRUE(spinUntil([this] { return peer_->bytesAvailable() == 2; }));
    EXPECT_TRUE(spinUntil([this] { return spaces_ > 0; }));
}

TEST_F(TcpDialerConnected, AChannelThatCannotTakeMoreSaysSo) {
    const std::vector<std::uint8_t> much(ByteChannel::kBufferLimit + 1000, 'x');
    EXPECT_EQ(channel_->write(much), static_cast<std::ptrdiff_t>(ByteChannel::kBufferLimit));
    EXPECT_FALSE(channel_->hasSpaceAvailable());
    EXPECT_EQ(channel_->write(much), 0);
}

TEST_F(TcpDialerConnected, APeerThatClosesEndsTheChannelBehindItsBytes) {
    peer_->write("last");
    peer_->disconnectFromHost();
    EXPECT_TRUE(spinUntil([this] { return !closed_.empty(); }));
    EXPECT_EQ(received_, "last");
}

TEST_F(TcpDialerConnected, AClosedChannelReadsAndWritesNothing) {
    channel_->close();
    std::uint8_t byte = 0;
    EXPECT_EQ(channel_->read(&byte, 1), -1);
    EXPECT_EQ(channel_->write(std::vector<std::uint8_t>{1}), -1);
    EXPECT_EQ(channel_->bytesAvailable(), 0U);
    EXPECT_FALSE(channel_->hasSpaceAvailable());
}

TEST_F(TcpDialerTest, ARefusedConnectionIsAFailedDialWithItsReason) {
    const quint16 port = server_.serverPort();
    server_.close();
    TcpDialer dialer(QStringLiteral("127.0.0.1"), port);
    dial(dialer);
    ASSERT_TRUE(spinUntil([this] { return answered_; }));
    EXPECT_EQ(channel_, nullptr);
    EXPECT_EQ(problem_, "Connection refused");
}

TEST(SocketError, IsSaidWithoutTheCallThatItBeginsWith) {
    EXPECT_EQ(textOfSocketError(QStringLiteral("QLocalSocket::connectToServer: Connection refused")),
              "Connection refused");
    EXPECT_EQ(textOfSocketError(QStringLiteral("Connection refused")), "Connection refused");
    EXPECT_EQ(textOfSocketError(QStringLiteral("Host name::1: unknown")), "Host name::1: unknown");
}

TEST_F(TcpDialerTest, ACancelledDialNeverAnswers) {
    TcpDialer cancelled(QStringLiteral("127.0.0.1"), server_.serverPort());
    dial(cancelled);
    cancelled.cancel();
    bool other = false;
    TcpDialer second(QStringLiteral("127.0.0.1"), server_.serverPort());
    second.dial([&](const Dialer::Outcome&) { other = true; });
    ASSERT_TRUE(spinUntil([&] { return other; }));
    EXPECT_FALSE(answered_);
}

}  // namespace
}  // namespace kestrix::platform
