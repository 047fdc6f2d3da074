#include "link/EADSessionTransferViewController.h"

#include <poll.h>
#include <unistd.h>

#include <optional>

#include "link/EADSessionController.h"
#include "link/LinkLog.h"
#include "link/NumberText.h"
#include "platform/AccessoryManager.h"
#include "ui/Palette.h"

namespace kestrix::link {
namespace {

using platform::Notification;
using platform::NotificationCenter;

constexpr std::size_t kFieldBits = 16;

// Of an ASCII digit; digits of other scripts are none.
std::optional<unsigned> hexValue(char digit) {
    if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
    if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a' + 10);
    if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A' + 10);
    return std::nullopt;
}

std::vector<std::uint8_t> bytesOfPairs(const std::string& text) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t at = 0; at + 1 < text.size(); at += 2) {
        const std::optional<unsigned> high = hexValue(text[at]);
        const std::optional<unsigned> low = hexValue(text[at + 1]);
        if (!high || !low) break;
        bytes.push_back(static_cast<std::uint8_t>(*high << 4U | *low));
    }
    return bytes;
}

// "7e 0d ", a blank behind each byte.
QString spacedHex(const std::vector<std::uint8_t>& bytes) {
    constexpr const char* kDigits = "0123456789abcdef";
    QString text(static_cast<qsizetype>(3 * bytes.size()), u' ');
    QChar* at = text.data();
    for (const std::uint8_t byte : bytes) {
        *at++ = QLatin1Char(kDigits[byte >> 4U]);
        *at++ = QLatin1Char(kDigits[byte & 15U]);
        ++at;
    }
    return text;
}

// The window never waits for whoever reads its standard output.
void writeLineUnlessItBlocks(const QByteArray& line) {
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    if (poll(&output, 1, 0) != 1 || (output.revents & POLLOUT) == 0) return;
    [[maybe_unused]] const ssize_t written =
        write(STDOUT_FILENO, line.constData(), static_cast<std::size_t>(line.size()));
}

}  // namespace

double EADSessionTransferViewController::lastReading = 0;

void EADSessionTransferViewController::viewDidLoad() {
    _receivedCaption.setText(tr("Last received"));
    _readingCaption.setText(tr("Reading"));
    _hexCaption.setText(tr("Hexadecimal"));
    _stringCaption.setText(tr("Text"));
    for (ui::Label* label :
         {&_receivedCaption, &_readingCaption, &_hexCaption, &_stringCaption, &_receivedBytesLabel}) {
        label->setFont(QStringLiteral("Arial"), 14);
        label->setTextColor(ui::Palette::textOnDark);
    }
    for (ui::Label* label : {&testType, &testResult}) {
        label->setFont(QStringLiteral("Arial"), 22);
        label->setTextColor(ui::Palette::textOnDark);
        label->setShrinksToFit(true);
    }
    _receivedBytesLabel.setShrinksToFit(true);
    rxResult.setAccessibleName(_receivedCaption.text());
    rxResult.setLocked(true);
    _hexToSendTextField.setAccessibleName(tr("Hexadecimal to send"));
    _hexToSendTextField.setPlaceholder(QStringLiteral("7e0d1e"));
    _stringToSendTextField.setAccessibleName(tr("Text to send"));
    for (ui::TextField* field : {&_hexToSendTextField, &_stringToSendTextField})
        field->setReturnAction([this, field] { return textFieldShouldReturn(*field); });
    btnSendHex.setTitle(tr("Send hex"));
    btnSendHex.setAction([this] { sendHex(); });
    btnSendString.setTitle(tr("Send string"));
    btnSendString.setAction([this] { sendString(); });
    btnSend10K.setTitle(tr("Send 10K"));
    btnSend10K.setAction([this] { send10K(); });
    for (ui::Button* button : {&btnSendHex, &btnSendString, &btnSend10K})
        button->setBackgroundImage(QStringLiteral("orvo_scenario_details_button.png"));
    showCount();
}

void EADSessionTransferViewController::viewWillAppear() {
    qCInfo(lcLink, "1");
    NotificationCenter& center = NotificationCenter::defaultCenter();
    disconnectSubscription_ =
        center.addObserver(platform::kAccessoryDidDisconnect,
                           [this](const Notification& event) { _accessoryDidDisconnect(event); });
    dataSubscription_ =
        center.addObserver(EADSessionDataReceivedNotification,
                           [this](const Notification& event) { _sessionDataReceived(event); });
    EADSessionController& controller = EADSessionController::sharedController();
    accessory_ = controller.accessory();
    setTitle(QString::fromStdString(controller.protocolString()));
    controller.openSession();
}

void EADSessionTransferViewController::viewWillDisappear() {
    dataSubscription_.cancel();
    EADSessionController::sharedController().closeSession();
    accessory_ = nullptr;
}

void EADSessionTransferViewController::viewDidUnload() {
    _receivedBytesLabel.setText({});
    for (ui::TextField* field : {&_stringToSendTextField, &_hexToSendTextField, &rxResult})
        field->setText({});
}

void EADSessionTransferViewController::sendHex() {
    _hexToSendTextField.endEditing();
    EADSessionController::sharedController().writeData(
        bytesOfPairs(_hexToSendTextField.text().toStdString()));
}

void EADSessionTransferViewController::send10K() {
    std::vector<std::uint8_t> pattern(kPatternLength);
    for (std::size_t i = 0; i < pattern.size(); ++i) pattern[i] = static_cast<std::uint8_t>(i % 256);
    EADSessionController::sharedController().writeData(pattern);
}

bool EADSessionTransferViewController::textFieldShouldReturn(ui::TextField& field) {
    field.endEditing();
    return true;
}

void EADSessionTransferViewController::_accessoryDidDisconnect(const Notification& event) {
    const auto* const gone = platform::userInfoOf<platform::AccessoryPtr>(event, platform::kAccessoryKey);
    if (gone == nullptr || *gone == nullptr || accessory_ == nullptr || isCovered()) return;
    if ((*gone)->connectionId == accessory_->connectionId) services_.navigation.dismiss(true);
}

void EADSessionTransferViewController::_sessionDataReceived(const Notification& event) {
    auto* const* const controller = platform::objectOf<EADSessionController*>(event);
    if (controller == nullptr || *controller == nullptr) return;
    QString chunk;
    while (const std::uint64_t available = (*controller)->readBytesAvailable()) {
        const std::vector<std::uint8_t> bytes =
            (*controller)->readData(available).value_or(std::vector<std::uint8_t>());
        totalBytesRead_ += static_cast<std::uint32_t>(bytes.size());
        chunk = spacedHex(bytes);
        rxResult.setText(chunk);
    }
    showCount();
    chunk.remove(u' ');
    qCInfo(lcLink).noquote() << chunk;
    readField(chunk);
}

void EADSessionTransferViewController::showCount() {
    _receivedBytesLabel.setText(
        QStringLiteral("Bytes Received from BTX311: %1").arg(static_cast<std::int32_t>(totalBytesRead_)));
}

void EADSessionTransferViewController::readField(const QString& chunk) {
    constexpr qsizetype kDigits = 4;
    const QString field = chunk.mid(2 * kFieldOffset, kDigits);
    if (field.size() < kDigits) return;
    qCInfo(lcLink).noquote() << field;
    const std::uint16_t value = field.toUShort(nullptr, 16);
    lastReading = value / 10.0;
    setReg(decimalTOBinary(value));
}

void EADSessionTransferViewController::setReg(std::string_view digits) {
    if (digits.size() < kFieldBits) {
        testType.setText(QStringLiteral("铁"));
        testResult.setText(QString::asprintf("%f", lastReading));
        return;
    }
    const QString rest = QLatin1String(digits.substr(1, kFieldBits - 1).data(), kFieldBits - 1);
    qCInfo(lcLink).noquote() << rest;
    two_ten(rest.toLongLong());
    const float reading = static_cast<float>(toDecimalSystemWithBinarySystem(rest)) / 10;
    testType.setText(QStringLiteral("非铁"));
    testResult.setText(QString::asprintf("%f", static_cast<double>(reading)));
}

std::string EADSessionTransferViewController::decimalTOBinary(std::uint16_t number) const {
    return binaryDigits(number);
}

std::int32_t EADSessionTransferViewController::two_ten(std::int64_t written) const {
    const std::int32_t result = valueOfDecimalWrittenBinary(written);
    writeLineUnlessItBlocks("转换为十进制：" + QByteArray::number(result) + '\n');
    return result;
}

std::int64_t EADSessionTransferViewController::toDecimalSystemWithBinarySystem(QStringView text) const {
    return valueOfBinaryText(text);
}

}  // namespace kestrix::link
