#include "platform/SerialDialer.h"

#include <QFileInfo>
#include <QSerialPort>

#include <memory>
#include <utility>

#include "platform/DeviceChannel.h"

namespace kestrix::platform {

SerialDialer::SerialDialer(QString path, int baud) : path_(std::move(path)), baud_(baud) {
    const QString folder = QFileInfo(path_).absolutePath();
    if (QFileInfo::exists(folder)) folder_.addPath(folder);
    QObject::connect(&folder_, &QFileSystemWatcher::directoryChanged, &folder_, [this] {
        if (QFileInfo::exists(path_) && peerMayBeBack) peerMayBeBack();
    });
}

void SerialDialer::dial(Done done) {
    if (!QFileInfo::exists(path_)) {
        done({nullptr, "no such port"});
        return;
    }
    auto port = std::make_unique<QSerialPort>(path_);
    port->setReadBufferSize(static_cast<qint64>(ByteChannel::kBufferLimit));
    port->setBaudRate(baud_);
    if (!port->open(QIODevice::ReadWrite)) {
        const bool busy = port->error() == QSerialPort::PermissionError && QFileInfo(path_).isReadable();
        done({nullptr, busy ? "the port is busy" : port->errorString().toStdString()});
        return;
    }
    QSerialPort* opened = port.get();
    auto channel = std::make_unique<DeviceChannel>(std::move(port));
    QObject::connect(opened, &QSerialPort::errorOccurred, opened,
                     [opened, channel = channel.get()](QSerialPort::SerialPortError error) {
                         if (error != QSerialPort::NoError)
                             channel->fail(opened->errorString().toStdString());
                     });
    done({std::move(channel), {}});
}

}  // namespace kestrix::platform
