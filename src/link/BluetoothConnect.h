#pragma once

#include <QStringView>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "link/BusinessCommunicationDelegate.h"
#include "link/EADSessionController.h"
#include "link/FrameExtractor.h"
#include "platform/AccessoryManager.h"
#include "platform/NotificationCenter.h"
#include "platform/UserDefaults.h"

namespace kestrix::link {

// Posted for the link states 0 and 1; object: the state as decimal text (std::string).
inline constexpr std::string_view Orvoblueviewnotification = "Orvoblueviewnotification";
// The user default that keeps the last link state.
inline constexpr const char* kBlueState = "bluestate";

inline constexpr std::int32_t kNotConnected = 0;
inline constexpr std::int32_t kConnected = 1;

// How the disconnect handler waits before it closes the session. It blocks the calling thread.
using Wait = std::function<void(std::chrono::milliseconds)>;
void blockingWait(std::chrono::milliseconds duration);

// Turns the tester's bytes into records: finds the tester among the accessories, follows its coming and
// going, publishes the link state, cuts frames out of the bytes, decodes each and hands the record to the
// delegate. Everything runs on the main thread, inside the stream's event.
class BluetoothConnect {
  public:
    static constexpr std::chrono::milliseconds kCloseDelay{1000};

    // Process-wide: a handled connect event closes the door for further ones until a disconnect event was
    // handled, and the reverse.
    static bool bConnectNotified;
    static bool bDisconnectNotified;
    static bool bBlueConnected;  // a mirror of the state; nothing reads it

    // Manager and defaults must outlive this object.
    BluetoothConnect(platform::AccessoryManager& manager, platform::UserDefaults& defaults,
                     Wait wait = blockingWait);

    // Subscribes, selects the tester among the accessories that are there, and opens the session.
    void initBlue();
    void deviceDidConnect(const platform::Notification& event);
    void deviceDidDisconnect(const platform::Notification& event);
    // Selects the first accessory of `devlist` that announces a protocol, and publishes the link state.
    bool isConnectDevice();
    void deviceDataReceived(const platform::Notification& event);
    // text: lower-case hexadecimal; any piece of the stream.
    void analyticalData(std::string_view text);
    protocol::MeterReading parse3820Data(std::string_view frameText);
    // Stores the state, and posts it when it is 0 or 1.
    void viewState(std::int32_t state);
    // Unsubscribes and closes the session.
    void allRelease();

    std::string decimalTOBinary(std::uint16_t number) const;
    std::int32_t two_ten(std::int64_t written) const;
    std::int64_t toDecimalSystemWithBinarySystem(QStringView text) const;

    // Not owned: the delegate owns this object. Without one, records are dropped.
    BusinessCommunicationDelegate* delegate() const { return delegate_; }
    void setDelegate(BusinessCommunicationDelegate* delegate) { delegate_ = delegate; }

    const platform::AccessoryPtr& measuredevice() const { return measuredevice_; }
    const std::string& strprotocol() const { return strprotocol_; }
    std::uint32_t totalBytesRead() const { return totalBytesRead_; }
    // Hexadecimal text that is not consumed yet. A drop of the link does not clear it.
    std::string_view receiveDataString() const { return extractor_.kept(); }

  private:
    void openSelected();

    platform::AccessoryManager& manager_;
    platform::UserDefaults& defaults_;
    Wait wait_;
    BusinessCommunicationDelegate* delegate_ = nullptr;

    std::vector<platform::AccessoryPtr> devlist_;  // snapshot for one search
    platform::AccessoryPtr measuredevice_;
    std::string strprotocol_;
    std::uint32_t totalBytesRead_ = 0;
    std::string hexText_;  // kept for its room
    FrameExtractor extractor_;

    platform::NotificationCenter::Subscription connectSubscription_;
    platform::NotificationCenter::Subscription disconnectSubscription_;
    platform::NotificationCenter::Subscription dataSubscription_;
};

}  // namespace kestrix::link
