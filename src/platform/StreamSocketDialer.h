#pragma once

#include <QAbstractSocket>
#include <QObject>

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/DeviceChannel.h"
#include "platform/Dialer.h"

namespace kestrix::platform {

// The step at which a socket failed. error: one of QAbstractSocket::SocketError; QLocalSocket counts its
// errors alike.
FailedStep stepOfSocketError(int error);

// What a socket says of its error, for a user: without the class and the call that it begins with.
std::string textOfSocketError(const QString& said);

// Reaches a tester behind a stream socket. Socket: QTcpSocket, QLocalSocket, or what has their operations and
// signals.
template <typename Socket>
class StreamSocketDialer : public Dialer {
  public:
    // Begins to connect a new socket: says where to.
    using Connect = std::function<void(Socket&)>;

    explicit StreamSocketDialer(Connect connect) : connect_(std::move(connect)) {}
    ~StreamSocketDialer() override { cancel(); }

    void dial(Done done) override {
        cancel();
        done_ = std::move(done);
        socket_ = std::make_unique<Socket>();
        socket_->setReadBufferSize(static_cast<qint64>(ByteChannel::kBufferLimit));
        // Queued: the socket is destroyed by what these lead to.
        QObject::connect(
            socket_.get(), &Socket::connected, socket_.get(), [this] { connected(); }, Qt::QueuedConnection);
        QObject::connect(
            socket_.get(), &Socket::errorOccurred, socket_.get(), [this] { failed(); }, Qt::QueuedConnection);
        connect_(*socket_);
    }

    void cancel() override {
        done_ = nullptr;
        if (!socket_) return;
        socket_->disconnect();
        socket_.reset();
    }

  private:
    void connected() {
        if (!socket_ || socket_->state() != Socket::ConnectedState) return;  // failed() comes next
        Socket* socket = socket_.get();
        socket->disconnect();
        if constexpr (requires { socket->setSocketOption(QAbstractSocket::LowDelayOption, 1); })
            socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        auto channel = std::make_unique<DeviceChannel>(std::move(socket_));
        QObject::connect(socket, &Socket::errorOccurred, socket, [socket, channel = channel.get()] {
            channel->fail(textOfSocketError(socket->errorString()));
        });
        std::exchange(done_, nullptr)({std::move(channel)});
    }

    void failed() {
        if (!socket_) return;
        Outcome outcome{nullptr, stepOfSocketError(static_cast<int>(socket_->error())),
                        textOfSocketError(socket_->errorString())};
        const Done done = std::exchange(done_, nullptr);
        cancel();
        if (done) done(std::move(outcome));
    }

    Connect connect_;
    std::unique_ptr<Socket> socket_;
    Done done_;
};

}  // namespace kestrix::platform
