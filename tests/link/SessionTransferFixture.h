#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "link/EADSessionController.h"
#include "link/EADSessionTransferViewController.h"
#include "tests/support/FakeChannel.h"
#include "tests/support/LogExpectations.h"
#include "tests/support/TestServices.h"

namespace kestrix::link {

// The console without its view, with an accessory whose line is in the test's hand.
class SessionTransfer : public ::testing::Test {
  protected:
    using Bytes = std::vector<std::uint8_t>;

    SessionTransfer() {
        EADSessionTransferViewController::lastReading = 0;
        controller().setupControllerForAccessory(accessory_, "kestrix.tester");
        screen_.setName(QStringLiteral("Link console"));
        screen_.loadView();
    }
    ~SessionTransfer() override {
        controller().closeSession();
        controller().setupControllerForAccessory(nullptr, "");
    }
    static EADSessionController& controller() { return EADSessionController::sharedController(); }

    void appear() {
        opener_.lines.push_back(&line_);
        screen_.viewWillAppear();
    }
    void receive(const Bytes& bytes) { line_.receive(bytes); }
    Bytes sent(const QString& typed) {
        line_.written.clear();
        screen_._hexToSendTextField.edit(typed);
        screen_.btnSendHex.press();
        return line_.written;
    }
    void disconnect(const platform::AccessoryPtr& gone) {
        platform::NotificationCenter::defaultCenter().post(
            {platform::kAccessoryDidDisconnect, {}, {{platform::kAccessoryKey, gone}}});
    }
    // What it wrote into the log since the last look.
    std::vector<std::string> logged() {
        const std::string own = "info kestrix.link: ";
        std::vector<std::string> lines;
        for (const std::string& line : testing::logLines()) {
            EXPECT_EQ(line.rfind(own, 0), 0U) << line;
            lines.push_back(line.substr(own.size()));
        }
        testing::forgetLogLines();
        return lines;
    }
    std::string result() const { return screen_.testResult.text().toStdString(); }
    std::string type() const { return screen_.testType.text().toStdString(); }
    std::string count() const { return screen_._receivedBytesLabel.text().toStdString(); }

    testing::FakeLine line_;
    testing::FakeOpener opener_;
    platform::AccessoryPtr accessory_ = std::make_shared<platform::Accessory>(
        platform::Accessory{7, "Tester", {"kestrix.tester"}, nullptr, &opener_});
    testing::TestServices around_;
    EADSessionTransferViewController screen_{ui::ScreenId::SessionTransfer, around_.services()};
};

}  // namespace kestrix::link
