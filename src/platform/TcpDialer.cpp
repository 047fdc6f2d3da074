#include "platform/TcpDialer.h"

#include <utility>

#include "platform/DeviceChannel.h"

namespace kestrix::platform {

TcpDialer::TcpDialer(QString host, quint16 port) : host_(std::move(host)), port_(port) {}

TcpDialer::~TcpDialer() {
    cancel();
}

void TcpDialer::dial(Done done) {
    cancel();
    done_ = std::move(done);
    socket_ = std::make_unique<QTcpSocket>();
    socket_->setReadBufferSize(static_cast<qint64>(ByteChannel::kBufferLimit));
    // Queued: the socket is destroyed by what these lead to.
    QObject::connect(
        socket_.get(), &QTcpSocket::connected, socket_.get(), [this] { connected(); }, Qt::QueuedConnection);
    QObject::connect(
        socket_.get(), &QTcpSocket::errorOccurred, socket_.get(), [this] { failed(); }, Qt::QueuedConnection);
    socket_->connectToHost(host_, port_);
}

void TcpDialer::cancel() {
    done_ = nullptr;
    if (!socket_) return;
    socket_->disconnect();
    socket_.reset();
}

void TcpDialer::connected() {
    if (!socket_ || socket_->state() != QAbstractSocket::ConnectedState) return;  // failed() comes next
    QTcpSocket* socket = socket_.get();
    socket->disconnect();
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    auto channel = std::make_unique<DeviceChannel>(std::move(socket_));
    QObject::connect(socket, &QTcpSocket::errorOccurred, socket, [socket, channel = channel.get()] {
        channel->fail(socket->errorString().toStdString());
    });
    std::exchange(done_, nullptr)({std::move(channel), {}});
}

void TcpDialer::failed() {
    if (!socket_) return;
    const std::string why = socket_->errorString().toStdString();
    const Done done = std::exchange(done_, nullptr);
    cancel();
    if (done) done({nullptr, why});
}

}  // namespace kestrix::platform
