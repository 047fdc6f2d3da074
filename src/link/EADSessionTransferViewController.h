#pragma once

#include <QStringView>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Accessory.h"
#include "platform/NotificationCenter.h"
#include "ui/FramedScreen.h"

namespace kestrix::link {

// The diagnostics console of the link. It has the session of the shared controller for itself while it is
// shown: shows what comes, reads one field of it as a thickness, and sends what is typed. For bench work; no
// other screen opens it.
class EADSessionTransferViewController final : public kestrix::ui::FramedScreen {
    Q_OBJECT

  public:
    static constexpr std::size_t kPatternLength = 10'000;  // bytes
    // The two bytes of a chunk that are read: where they begin. Bit 15 is the kind of probe, the rest the
    // reading in tenths.
    static constexpr qsizetype kFieldOffset = 7;

    // Process-wide: the field that was read last, divided by ten. A chunk that does not reach as far as the
    // field leaves it, and what is shown of it, as they are.
    static double lastReading;

    using FramedScreen::FramedScreen;

    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewWillDisappear() override;
    // The view is gone: nothing is kept of what its four text controls showed.
    void viewDidUnload();

    // Sends the pairs of hexadecimal digits that the field begins with: 7e0d1 sends 7E 0D.
    void sendHex();
    // Sends kPatternLength bytes, of which byte i is i modulo 256.
    void send10K();
    void sendString() {}
    bool textFieldShouldReturn(ui::TextField& field);

    void _accessoryDidDisconnect(const platform::Notification& event);
    void _sessionDataReceived(const platform::Notification& event);

    // digits: of the field, binary, the highest first, without leading zeros.
    void setReg(std::string_view digits);
    std::string decimalTOBinary(std::uint16_t number) const;
    // Also writes the result into a line of standard output; the line is dropped when nobody takes it.
    std::int32_t two_ten(std::int64_t written) const;
    std::int64_t toDecimalSystemWithBinarySystem(QStringView text) const;

    const platform::AccessoryPtr& accessory() const { return accessory_; }
    std::uint32_t totalBytesRead() const { return totalBytesRead_; }

    ui::Label _receivedBytesLabel{*this, "_receivedBytesLabel"};
    ui::Label _receivedCaption{*this, "_receivedCaption"};
    ui::TextField rxResult{*this, "rxResult"};
    ui::Label _readingCaption{*this, "_readingCaption"};
    ui::Label testType{*this, "testType"};
    ui::Label testResult{*this, "testResult"};
    ui::Label _hexCaption{*this, "_hexCaption"};
    ui::TextField _hexToSendTextField{*this, "_hexToSendTextField"};
    ui::Button btnSendHex{*this, "btnSendHex", ui::Button::Event::TouchUpInside};
    ui::Label _stringCaption{*this, "_stringCaption"};
    ui::TextField _stringToSendTextField{*this, "_stringToSendTextField"};
    ui::Button btnSendString{*this, "btnSendString", ui::Button::Event::TouchUpInside};
    ui::Button btnSend10K{*this, "btnSend10K", ui::Button::Event::TouchUpInside};

  private:
    void showCount();
    // chunk: the hexadecimal text of its bytes, without blanks.
    void readField(const QString& chunk);

    platform::AccessoryPtr accessory_;  // of the session; none while the screen is not shown
    std::uint32_t totalBytesRead_ = 0;
    platform::NotificationCenter::Subscription disconnectSubscription_;  // stays when the screen goes
    platform::NotificationCenter::Subscription dataSubscription_;
};

}  // namespace kestrix::link
