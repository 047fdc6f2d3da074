#include "link/BluetoothConnect.h"

#include <QStringList>

#include <algorithm>
#include <thread>
#include <utility>

#include "link/LinkLog.h"
#include "link/NumberText.h"
#include "protocol/HexText.h"
#include "protocol/KV3820protocal.h"

namespace kestrix::link {

Q_LOGGING_CATEGORY(lcLink, "kestrix.link", QtWarningMsg)

using platform::Notification;
using platform::NotificationCenter;

bool BluetoothConnect::bConnectNotified = false;
bool BluetoothConnect::bDisconnectNotified = false;
bool BluetoothConnect::bBlueConnected = false;

void blockingWait(std::chrono::milliseconds duration) {
    std::this_thread::sleep_for(duration);
}

BluetoothConnect::BluetoothConnect(platform::AccessoryManager& manager, platform::UserDefaults& defaults,
                                   Wait wait)
    : manager_(manager), defaults_(defaults), wait_(std::move(wait)) {}

void BluetoothConnect::initBlue() {
    NotificationCenter& center = NotificationCenter::defaultCenter();
    connectSubscription_ = center.addObserver(platform::kAccessoryDidConnect,
                                              [this](const Notification& event) { deviceDidConnect(event); });
    disconnectSubscription_ = center.addObserver(
        platform::kAccessoryDidDisconnect, [this](const Notification& event) { deviceDidDisconnect(event); });
    manager_.registerForLocalNotifications();
    dataSubscription_ = center.addObserver(EADSessionDataReceivedNotification,
                                           [this](const Notification& event) { deviceDataReceived(event); });
    devlist_ = manager_.connectedAccessories();
    QStringList names;
    for (const platform::AccessoryPtr& accessory : devlist_) names += QString::fromStdString(accessory->name);
    qCInfo(lcLink).noquote().nospace() << "devicename:(" << names.join(QStringLiteral(", ")) << ")";
    if (isConnectDevice()) openSelected();
    devlist_.clear();
}

void BluetoothConnect::deviceDidConnect(const Notification&) {
    qCInfo(lcLink, "====连接====");
    if (bConnectNotified) return;
    devlist_ = manager_.connectedAccessories();
    if (isConnectDevice()) {
        openSelected();
        bBlueConnected = true;
        viewState(kConnected);
    }
    devlist_.clear();
    bConnectNotified = true;
    bDisconnectNotified = false;
}

void BluetoothConnect::deviceDidDisconnect(const Notification& event) {
    qCInfo(lcLink, "====非连接====");
    if (bDisconnectNotified) return;
    viewState(kNotConnected);
    const auto* gone = platform::userInfoOf<platform::AccessoryPtr>(event, platform::kAccessoryKey);
    const std::uint32_t goneId = gone != nullptr && *gone ? (*gone)->connectionId : 0;
    const std::uint32_t testerId = measuredevice_ ? measuredevice_->connectionId : 0;
    if (goneId == testerId) {
        if (measuredevice_) {
            wait_(kCloseDelay);
            EADSessionController::sharedController().closeSession();
            measuredevice_.reset();
        }
        bBlueConnected = false;
    }
    bDisconnectNotified = true;
    bConnectNotified = false;
}

bool BluetoothConnect::isConnectDevice() {
    const auto tester = std::find_if(
        devlist_.begin(), devlist_.end(),
        [](const platform::AccessoryPtr& accessory) { return !accessory->protocolStrings.empty(); });
    if (tester == devlist_.end()) {
        bBlueConnected = false;
        viewState(kNotConnected);
        return false;
    }
    measuredevice_ = *tester;
    strprotocol_ = measuredevice_->protocolStrings.front();
    viewState(kConnected);
    bBlueConnected = true;
    return true;
}

// Whether the session opens is not looked at: the link state follows the accessories.
void BluetoothConnect::openSelected() {
    EADSessionController& controller = EADSessionController::sharedController();
    controller.setupControllerForAccessory(measuredevice_, strprotocol_);
    controller.openSession();
}

void BluetoothConnect::deviceDataReceived(const Notification& event) {
    const auto* poster = platform::objectOf<EADSessionController*>(event);
    if (poster == nullptr || *poster == nullptr) return;
    EADSessionController& controller = **poster;
    hexText_.clear();
    while (const std::uint64_t available = controller.readBytesAvailable()) {
        const auto bytes = controller.readData(available);
        if (!bytes) break;
        totalBytesRead_ += static_cast<std::uint32_t>(bytes->size());
        protocol::appendHexText(hexText_, *bytes);
    }
    if (!hexText_.empty()) analyticalData(hexText_);
}

void BluetoothConnect::analyticalData(std::string_view text) {
    extractor_.append(text);
    while (const auto frameText = extractor_.nextFrame()) {
        // As parse3820Data() does, without moving the record's texts.
        protocol::KV3820protocal decoder;
        decoder.initFromString(*frameText);
        if (delegate_ != nullptr) delegate_->didReceive3820Data(decoder.return3820data(), true);
    }
}

protocol::MeterReading BluetoothConnect::parse3820Data(std::string_view frameText) {
    protocol::KV3820protocal decoder;
    decoder.initFromString(frameText);
    return std::move(decoder).getAllDataStructValue();
}

void BluetoothConnect::viewState(std::int32_t state) {
    defaults_.setInteger(QLatin1String(kBlueState), state);
    if (static_cast<std::uint32_t>(state) < 2)
        NotificationCenter::defaultCenter().post({Orvoblueviewnotification, std::to_string(state)});
}

void BluetoothConnect::allRelease() {
    connectSubscription_.cancel();
    disconnectSubscription_.cancel();
    dataSubscription_.cancel();
    EADSessionController::sharedController().closeSession();
}

std::string BluetoothConnect::decimalTOBinary(std::uint16_t number) const {
    return binaryDigits(number);
}

std::int32_t BluetoothConnect::two_ten(std::int64_t written) const {
    return valueOfDecimalWrittenBinary(written);
}

std::int64_t BluetoothConnect::toDecimalSystemWithBinarySystem(QStringView text) const {
    return valueOfBinaryText(text);
}

}  // namespace kestrix::link
