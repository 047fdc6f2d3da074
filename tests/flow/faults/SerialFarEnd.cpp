#include "tests/flow/faults/SerialFarEnd.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace kestrix::faults {

SerialFarEnd::SerialFarEnd() {
    ::chmod(QFile::encodeName(folder_.path()).constData(), 0711);  // others may look for the node, too
    makeTerminal();
    makeNode();
}

void SerialFarEnd::makeTerminal() {
    pty_ = std::make_unique<testing::Pty>();
    ::fcntl(pty_->master(), F_SETFL, O_NONBLOCK);
    otherEnd_ = ::open(pty_->name().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_GE(otherEnd_, 0);
}

void SerialFarEnd::hangUp() {
    pty_->hangUp();
    if (otherEnd_ >= 0) ::close(std::exchange(otherEnd_, -1));
}

bool SerialFarEnd::hasArrived(std::size_t bytes) {
    int waiting = 0;
    return ::ioctl(otherEnd_, FIONREAD, &waiting) == 0 && static_cast<std::size_t>(waiting) >= bytes;
}

std::unique_ptr<platform::AccessorySource> SerialFarEnd::makeSource(platform::Scheduler& scheduler,
                                                                    platform::ListenerFactory listeners) {
    return sourceOf("serial:" + node_.toStdString() + "?baud=9600", scheduler, std::move(listeners));
}

std::size_t SerialFarEnd::send(std::span<const std::uint8_t> bytes) {
    const ssize_t count = ::write(pty_->master(), bytes.data(), bytes.size());
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

// Of a serial line there is no end in order: the adapter's node goes, and is there again.
void SerialFarEnd::end() {
    leave();
    makeTerminal();
    makeNode();
}

void SerialFarEnd::breakOff() {
    hangUp();
    removeNode();
    makeTerminal();
    makeNode();
}

void SerialFarEnd::leave() {
    removeNode();
    hangUp();
}

void SerialFarEnd::comeBack() {
    if (pty_->master() < 0) makeTerminal();
    if (!QFileInfo::exists(node_)) makeNode();
}

void SerialFarEnd::removeNode() {
    if (QFileInfo(node_).isDir()) {
        EXPECT_TRUE(QDir().rmdir(node_));
    }
    QFile::remove(node_);
}

void SerialFarEnd::makeNode() {
    EXPECT_TRUE(QFile::link(terminal(), node_));
}

}  // namespace kestrix::faults
