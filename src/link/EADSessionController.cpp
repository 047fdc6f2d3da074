#include "link/EADSessionController.h"

#include <array>
#include <utility>

#include "link/LinkLog.h"
#include "platform/NotificationCenter.h"

namespace kestrix::link {

EADSessionController& EADSessionController::sharedController() {
    static auto* controller = new EADSessionController;
    return *controller;
}

EADSessionController::~EADSessionController() {
    closeSession();
    if (accessory_ && accessory_->delegate == this) accessory_->delegate = nullptr;
}

void EADSessionController::setupControllerForAccessory(platform::AccessoryPtr accessory,
                                                       std::string protocolString) {
    accessory_ = std::move(accessory);
    protocolString_ = std::move(protocolString);
}

bool EADSessionController::openSession() {
    if (accessory_) accessory_->delegate = this;
    session_ = platform::EASession::create(accessory_, protocolString_);
    if (!session_) {
        qCWarning(lcLink, "creating session failed");
        return false;
    }
    for (platform::Stream* stream : {static_cast<platform::Stream*>(&session_->inputStream()),
                                     static_cast<platform::Stream*>(&session_->outputStream())}) {
        stream->setDelegate(this);
        stream->scheduleInRunLoop();
        stream->open();
    }
    return true;
}

void EADSessionController::closeSession() {
    if (session_) {
        for (platform::Stream* stream : {static_cast<platform::Stream*>(&session_->inputStream()),
                                         static_cast<platform::Stream*>(&session_->outputStream())}) {
            stream->close();
            stream->removeFromRunLoop();
            stream->setDelegate(nullptr);
        }
    }
    session_.reset();
    writeBuffer_ = {};
    readBuffer_ = {};
    readTaken_ = 0;
}

void EADSessionController::writeData(std::span<const std::uint8_t> bytes) {
    writeBuffer_.insert(writeBuffer_.end(), bytes.begin(), bytes.end());
    _writeData();
}

std::optional<std::vector<std::uint8_t>> EADSessionController::readData(std::uint64_t count) {
    if (readBytesAvailable() < count) return std::nullopt;
    const auto first = readBuffer_.begin() + static_cast<std::ptrdiff_t>(readTaken_);
    std::vector<std::uint8_t> bytes(first, first + static_cast<std::ptrdiff_t>(count));
    readTaken_ += count;
    // Moving the rest to the front costs no more than what was taken since the last time.
    if (readTaken_ >= readBuffer_.size() - readTaken_) {
        readBuffer_.erase(readBuffer_.begin(), readBuffer_.begin() + static_cast<std::ptrdiff_t>(readTaken_));
        readTaken_ = 0;
    }
    return bytes;
}

void EADSessionController::stream(platform::Stream&, platform::StreamEvent event) {
    if (event == platform::StreamEvent::HasBytesAvailable) _readData();
    if (event == platform::StreamEvent::HasSpaceAvailable) _writeData();
}

void EADSessionController::_readData() {
    std::array<std::uint8_t, kReadChunk> chunk;
    while (session_ && session_->inputStream().hasBytesAvailable()) {
        const std::ptrdiff_t count = session_->inputStream().read(chunk.data(), chunk.size());
        if (count <= 0) break;  // an error has no bytes to keep, and would be met again without end
        readBuffer_.insert(readBuffer_.end(), chunk.begin(), chunk.begin() + count);
    }
    platform::NotificationCenter::defaultCenter().post({EADSessionDataReceivedNotification, this});
}

void EADSessionController::_writeData() {
    while (session_ && session_->outputStream().hasSpaceAvailable() && !writeBuffer_.empty()) {
        const std::ptrdiff_t count = session_->outputStream().write(writeBuffer_);
        if (count < 0) {
            qCWarning(lcLink, "write error");
            return;
        }
        if (count == 0) return;  // the next space event goes on
        writeBuffer_.erase(writeBuffer_.begin(), writeBuffer_.begin() + count);
    }
}

}  // namespace kestrix::link
