#include "platform/SerialDialer.h"

#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSerialPort>

#include <memory>
#include <string>
#include <utility>

#include "platform/DeviceChannel.h"

namespace kestrix::platform {
namespace {

bool mayOpen(const QString& path) {
    return access(QFile::encodeName(path).constData(), R_OK | W_OK) == 0;
}

// The port's own text is not used: for a line that hung up it is the system's message of some earlier
// failure.
std::string reasonOfLoss(const QString& path) {
    return QFileInfo::exists(path) ? "the port has hung up" : "the port has gone";
}

Dialer::Outcome failure(const QSerialPort& port, const QString& path) {
    if (!QFileInfo::exists(path)) return {nullptr, FailedStep::Missing, "no such port"};
    if (!mayOpen(path)) return {nullptr, FailedStep::Rights, "no right to open the port"};
    if (port.error() == QSerialPort::PermissionError) return {nullptr, FailedStep::Busy, "the port is busy"};
    return {nullptr, FailedStep::Other, port.errorString().toStdString()};
}

}  // namespace

SerialDialer::SerialDialer(const QString& path, int baud)
    : path_(QDir::cleanPath(QDir::current().absoluteFilePath(path))), baud_(baud), watcher_(path_, [this] {
          if (QFileInfo::exists(path_) && peerMayBeBack) peerMayBeBack();
      }) {}

void SerialDialer::dial(Done done) {
    auto port = std::make_unique<QSerialPort>(path_);
    port->setReadBufferSize(static_cast<qint64>(ByteChannel::kBufferLimit));
    port->setBaudRate(baud_);
    if (!QFileInfo::exists(path_) || !port->open(QIODevice::ReadWrite)) {
        done(failure(*port, path_));
        return;
    }
    QSerialPort* opened = port.get();
    auto channel = std::make_unique<DeviceChannel>(std::move(port));
    QObject::connect(opened, &QSerialPort::errorOccurred, opened,
                     [path = path_, channel = channel.get()](QSerialPort::SerialPortError error) {
                         if (error != QSerialPort::NoError) channel->fail(reasonOfLoss(path));
                     });
    done({std::move(channel)});
}

}  // namespace kestrix::platform
