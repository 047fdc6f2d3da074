#include "apps/kestrix-cli/TcpLine.h"

#include <algorithm>
#include <utility>

namespace kestrix::cli {

TcpLine::TcpLine(platform::GeneratedDialer::MakeProducer producers, platform::Scheduler& scheduler)
    : tester_(std::move(producers), *this, scheduler) {
    QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] { accept(); });
}

TcpLine::~TcpLine() {
    if (client_ != nullptr) client_->disconnect();
}

std::string TcpLine::listen(const std::string& host, quint16 port) {
    QHostAddress address;
    if (host == "localhost") {
        address = QHostAddress::LocalHost;
    } else if (!address.setAddress(QString::fromStdString(host))) {
        return "'" + host + "' is not an address";
    }
    return server_.listen(address, port) ? std::string() : server_.errorString().toStdString();
}

void TcpLine::accept() {
    while (QTcpSocket* socket = server_.nextPendingConnection()) {
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        if (client_ != nullptr) {
            socket->disconnectFromHost();
            continue;
        }
        client_ = socket;
        QObject::connect(socket, &QTcpSocket::disconnected, &server_, [this, socket] {
            if (client_ != socket) return;
            client_ = nullptr;
            tester_.clientLeft();
        });
        QObject::connect(socket, &QTcpSocket::readyRead, socket,
                         [socket] { socket->readAll(); });  // it listens to nothing
        QObject::connect(socket, &QTcpSocket::bytesWritten, socket, [this] { tester_.pump(); });
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        tester_.clientCame();
    }
}

std::size_t TcpLine::room() const {
    if (client_ == nullptr) return 0;
    const auto waiting = static_cast<std::size_t>(client_->bytesToWrite());
    return platform::ByteChannel::kBufferLimit - std::min(waiting, platform::ByteChannel::kBufferLimit);
}

void TcpLine::write(std::span<const std::uint8_t> bytes) {
    if (client_ == nullptr) return;
    client_->write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
}

void TcpLine::hangUp() {
    if (QTcpSocket* socket = std::exchange(client_, nullptr)) socket->disconnectFromHost();
}

}  // namespace kestrix::cli
