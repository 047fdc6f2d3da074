#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/EASession.h"

namespace kestrix::link {

// Posted once per stream event after the input has been drained, on the main thread, inside that event.
// Object: the EADSessionController* itself.
inline constexpr std::string_view EADSessionDataReceivedNotification = "EADSessionDataReceivedNotification";

// The one place that talks to the tester's session: keeps what has come until somebody takes it, and what is
// to be sent until the channel has room. Main thread only.
class EADSessionController final : public platform::StreamDelegate, public platform::AccessoryDelegate {
  public:
    static constexpr std::size_t kReadChunk = 128;  // bytes read from the stream at a time

    // The shared instance, made on the first call and never destroyed.
    static EADSessionController& sharedController();

    EADSessionController() = default;
    ~EADSessionController() override;

    // Remembers both; opens nothing.
    void setupControllerForAccessory(platform::AccessoryPtr accessory, std::string protocolString);
    const platform::AccessoryPtr& accessory() const { return accessory_; }
    const std::string& protocolString() const { return protocolString_; }

    // Opens a session, replacing one that is open without closing its streams. False, with a log line, when
    // the platform refuses.
    bool openSession();
    // Drops the session with all bytes not taken and not sent. Harmless without a session.
    void closeSession();

    // Queues bytes and sends as many as the channel takes now; the rest goes with its space events, of which
    // an open session has its first at once.
    void writeData(std::span<const std::uint8_t> bytes);
    // Exactly `count` bytes from the front; none, and nothing is taken, when fewer have come.
    std::optional<std::vector<std::uint8_t>> readData(std::uint64_t count);
    std::uint64_t readBytesAvailable() const { return readBuffer_.size() - readTaken_; }

    void stream(platform::Stream& stream, platform::StreamEvent event) override;
    void accessoryDidDisconnect(const platform::Accessory&) override {}

  private:
    void _readData();
    void _writeData();

    platform::AccessoryPtr accessory_;
    std::unique_ptr<platform::EASession> session_;
    std::string protocolString_;
    std::vector<std::uint8_t> writeBuffer_;
    std::vector<std::uint8_t> readBuffer_;
    std::size_t readTaken_ = 0;  // bytes at the front of readBuffer_ that have been taken
};

}  // namespace kestrix::link
