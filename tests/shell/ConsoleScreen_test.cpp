// The diagnostics console in its window: by mouse, finger, keys and screen reader, and over a real line.
#include <unistd.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QtTest/QTest>

#include <algorithm>
#include <array>

#include "link/EADSessionTransferViewController.h"
#include "shell/ConsoleWindow.h"
#include "tests/support/EventLoop.h"
#include "tests/support/Pty.h"
#include "tests/support/StepDriver.h"
#include "tests/support/WindowWalks.h"

namespace kestrix::shell {
namespace {

using Bytes = std::vector<std::uint8_t>;
using link::EADSessionTransferViewController;

class ConsoleScreen : public testing::WindowWalks {
  protected:
    ~ConsoleScreen() override { closeWindow(); }

    void openConsole(std::vector<std::string> uris = {}, std::chrono::milliseconds slide = {}) {
        EADSessionTransferViewController::lastReading = 0;
        ConsoleOptions options;
        options.uris = std::move(uris);
        options.slideDuration = slide;
        options.scheduler = &scheduler_;
        console_.emplace(std::move(options));
        tester_.emplace(console_->accessories());
        ASSERT_TRUE(console_->start()) << console_->problem();
        showWindow(std::make_unique<ConsoleWindow>(*console_));
    }
    void openWithTester() {
        openConsole();
        tester_->appear();
        settle();
    }
    int presented() { return console_->screens().count(); }
    EADSessionTransferViewController& transfer() {
        return dynamic_cast<EADSessionTransferViewController&>(*console_->screens().topmost());
    }
    const Bytes& written() { return tester_->line().written; }
    void send(const Bytes& bytes) { tester_->send(bytes); }
    void receiveField(std::uint16_t field) {
        Bytes chunk(36);
        chunk[7] = static_cast<std::uint8_t>(field >> 8U);
        chunk[8] = static_cast<std::uint8_t>(field & 255U);
        send(chunk);
        settle();
    }
    void expectGood(const char* where) {
        settle();
        keepPictures(where);
        EXPECT_EQ(testing::inLines(allProblems()), "") << where;
    }

    std::optional<ConsoleApplication> console_;
    std::optional<testing::FakeTester> tester_;
};

TEST_F(ConsoleScreen, TellsWhichTesterIsLookedForAndWhyItIsNotThere) {
    openConsole();
    EXPECT_EQ(text("lblState"), QStringLiteral("Looking for it"));
    EXPECT_EQ(text("lblWhy"), QString());
    tester_->tell({platform::SearchState::Waiting, platform::FailedStep::Refused, "nobody answers", "HC-05"});
    settle();
    EXPECT_EQ(text("lblTester"), QStringLiteral("HC-05"));
    EXPECT_TRUE(text("lblWhy").startsWith(QStringLiteral("Looking for HC-05: nobody answers\n")))
        << text("lblWhy").toStdString();
    EXPECT_FALSE(isShown("btnOpen"));
    EXPECT_FALSE(isShown("btnBack"));
}

TEST_F(ConsoleScreen, ComesWithItsTesterAndLeavesWithIt) {
    openWithTester();
    ASSERT_EQ(presented(), 1);
    EXPECT_TRUE(isShown("sessionTransferView"));
    EXPECT_FALSE(isShown("consoleSearchView"));
    EXPECT_EQ(text("_receivedBytesLabel"), QStringLiteral("Bytes Received from BTX311: 0"));
    EXPECT_NE(tester_->line().channel, nullptr);
    tester_->leave();
    settle();
    EXPECT_EQ(presented(), 0);
    EXPECT_EQ(tester_->line().channel, nullptr);
    EXPECT_TRUE(isShown("consoleSearchView"));
    EXPECT_FALSE(isShown("btnOpen"));
    tester_->appear();
    EXPECT_EQ(presented(), 1);
}

TEST_F(ConsoleScreen, ShowsWhatComesAndItsReading) {
    openWithTester();
    receiveField(0x007b);
    EXPECT_EQ(text("testType"), QStringLiteral("铁"));
    EXPECT_EQ(text("testResult"), QStringLiteral("12.300000"));
    EXPECT_EQ(text("_receivedBytesLabel"), QStringLiteral("Bytes Received from BTX311: 36"));
    EXPECT_TRUE(item("rxResult")
                    .property("text")
                    .toString()
                    .startsWith(QStringLiteral("00 00 00 00 00 00 00 00 7b 00 ")));
}

TEST_F(ConsoleScreen, BackClosesTheSessionAndTheButtonOpensItAgainWithACountOfItsOwn) {
    openWithTester();
    for (const int way : {0, 1, 2, 3}) {
        send({1, 2, 3});
        settle();
        if (way == 0) click("btnBack");
        if (way == 1) tap("btnBack");
        if (way == 2) pressKey(Qt::Key_Escape);
        if (way == 3) pressKey(Qt::Key_Back);
        settle();
        ASSERT_EQ(presented(), 0) << way;
        EXPECT_EQ(tester_->line().channel, nullptr) << way;
        EXPECT_EQ(text("lblState"), QStringLiteral("Connected"));
        if (way == 0) click("btnOpen");
        if (way == 1) tap("btnOpen");
        if (way == 2) {
            pressKey(Qt::Key_Tab);
            EXPECT_EQ(focused(), "btnOpen");
            pressKey(Qt::Key_Space);
        }
        if (way == 3) pressByScreenReader("btnOpen");
        settle();
        ASSERT_EQ(presented(), 1) << way;
        EXPECT_EQ(text("_receivedBytesLabel"), QStringLiteral("Bytes Received from BTX311: 0")) << way;
    }
}

TEST_F(ConsoleScreen, EscapeDoesNotCloseWhatNothingLiesBehind) {
    openConsole();
    pressKey(Qt::Key_Escape);
    pressKey(Qt::Key_F1);
    settle();
    EXPECT_TRUE(isShown("consoleSearchView"));
}

TEST_F(ConsoleScreen, SendsWhatIsTypedByMouseFingerKeysAndScreenReader) {
    openWithTester();
    click("_hexToSendTextField");
    EXPECT_TRUE(transfer()._hexToSendTextField.isEditing());
    for (const char key : {'7', 'e', '0', 'D', '1'}) QTest::keyClick(&window(), key);
    pressKey(Qt::Key_Return);
    EXPECT_FALSE(transfer()._hexToSendTextField.isEditing());
    EXPECT_EQ(written(), Bytes{});
    click("btnSendHex");
    EXPECT_EQ(written(), (Bytes{0x7e, 0x0d}));
    tap("btnSendHex");
    EXPECT_EQ(written().size(), 4U);
    click("_hexToSendTextField");
    pressKey(Qt::Key_Tab);
    EXPECT_EQ(focused(), "btnSendHex");
    pressKey(Qt::Key_Space);
    EXPECT_EQ(written().size(), 6U);
    pressByScreenReader("btnSendHex");
    EXPECT_EQ(written().size(), 8U);
    click("btnSendString");
    EXPECT_EQ(written().size(), 8U);
    click("btnSend10K");
    EXPECT_EQ(written().size(), 10'008U);
}

TEST_F(ConsoleScreen, NothingCanBeTypedIntoWhatHasCome) {
    openWithTester();
    send({0xab});
    settle();
    click("rxResult");
    QTest::keyClick(&window(), 'x');
    settle();
    EXPECT_EQ(item("rxResult").property("text").toString(), QStringLiteral("ab "));
    EXPECT_EQ(transfer().rxResult.text(), QStringLiteral("ab "));
}

TEST_F(ConsoleScreen, OfALargeChunkTheBeginningIsShown) {
    openWithTester();
    send(Bytes(65'536, 0xab));
    settle();
    const QString shown = item("rxResult").property("text").toString();
    EXPECT_EQ(shown.size(), 385);
    EXPECT_TRUE(shown.startsWith(QStringLiteral("ab ab ")));
    EXPECT_TRUE(shown.endsWith(u'…'));
    EXPECT_LE(item("rxResult").property("contentHeight").toDouble(), item("rxResult").height());
    EXPECT_EQ(transfer().rxResult.text().size(), 3 * 65'536);
}

TEST_F(ConsoleScreen, IsGoodInAllItsStates) {
    openConsole();
    expectGood("console-search");
    tester_->tell(
        {platform::SearchState::Waiting, platform::FailedStep::Refused,
         "nobody answers at a place with a very long name that needs more than one line of this screen",
         "A tester with a long name that does not end"});
    expectGood("console-search-problem");
    tester_->appear();
    expectGood("console");
    receiveField(0xffff);
    transfer()._hexToSendTextField.setText(QStringLiteral("7e0d1e"));
    expectGood("console-filled");
    send(Bytes(1000, 0xdd));
    expectGood("console-large");
    console_->screens().dismiss(false);
    expectGood("console-left");
}

TEST_F(ConsoleScreen, ItsPartsHaveNamesForAScreenReader) {
    openWithTester();
    receiveField(0x807b);
    const std::pair<const char*, const char*> names[] = {{"rxResult", "Last received"},
                                                         {"_hexToSendTextField", "Hexadecimal to send"},
                                                         {"_stringToSendTextField", "Text to send"},
                                                         {"testType", "非铁"},
                                                         {"testResult", "12.300000"},
                                                         {"btnSend10K", "Send 10K"}};
    for (const auto& [name, said] : names)
        EXPECT_EQ(QAccessible::queryAccessibleInterface(&item(name))->text(QAccessible::Name),
                  QString::fromUtf8(said))
            << name;
}

TEST_F(ConsoleScreen, ATesterThatGoesWhileTheConsoleSlidesInIsGone) {
    testing::StepDriver clock;
    openConsole({}, std::chrono::milliseconds(300));
    tester_->appear();
    clock.step(100);
    tester_->leave();
    EXPECT_EQ(tester_->line().channel, nullptr);
    clock.step(400);
    EXPECT_TRUE(testing::spinUntil([this] { return presented() == 0; }));
    settle();
    EXPECT_TRUE(isShown("consoleSearchView"));
}

TEST_F(ConsoleScreen, ASecondTesterGetsTheConsoleWhenTheFirstGoes) {
    openWithTester();
    testing::FakeTester other(console_->accessories());
    other.appear();
    EXPECT_EQ(presented(), 1);
    EXPECT_EQ(other.line().channel, nullptr);
    tester_->leave();
    settle();
    EXPECT_EQ(presented(), 1);
    EXPECT_NE(other.line().channel, nullptr);
    other.send(Bytes{1, 2});
    EXPECT_EQ(transfer().totalBytesRead(), 2U);
}

TEST_F(ConsoleScreen, AWrongUriIsSaid) {
    ConsoleOptions options;
    options.uris = {"morse:key"};
    ConsoleApplication application(std::move(options));
    EXPECT_FALSE(application.start());
    EXPECT_EQ(application.exitStatus(), 2);
    EXPECT_NE(application.problem().find("morse:key"), std::string::npos) << application.problem();
}

// The far end of a real line, which takes ten bytes at a time.
class ConsoleOnALine : public ConsoleScreen {
  protected:
    bool waitFor(const std::function<bool()>& condition) {
        return testing::spinUntil([&] {
            scheduler_.runDue();
            return condition();
        });
    }
    void takeTen() {
        std::array<std::uint8_t, 10> bytes;
        const ssize_t count = read(pty_.master(), bytes.data(), bytes.size());
        if (count > 0) taken_.insert(taken_.end(), bytes.begin(), bytes.begin() + count);
    }

    void openOnTheLine() {
        openConsole({"serial:" + pty_.name()});
        ASSERT_TRUE(waitFor([this] {
            const Bytes noise{0x55};
            pty_.send(noise);
            return presented() == 1;
        }));
        settle();
    }
    // From now on the far end takes what comes, until there are so many bytes of it.
    void takeAll(std::size_t count) {
        QSocketNotifier farEnd(pty_.master(), QSocketNotifier::Read);
        QObject::connect(&farEnd, &QSocketNotifier::activated, &farEnd, [this] { takeTen(); });
        EXPECT_TRUE(waitFor([this, count] { return taken_.size() >= count; })) << taken_.size();
    }
    static Bytes patterns(int times) {
        Bytes bytes;
        for (int pattern = 0; pattern < times; ++pattern) {
            for (int i = 0; i < 10'000; ++i) bytes.push_back(static_cast<std::uint8_t>(i % 256));
        }
        return bytes;
    }

    testing::Pty pty_;
    Bytes taken_;
};

TEST_F(ConsoleOnALine, AnyByteShowsItAndTheTestPatternArrivesWholeAndInOrder) {
    ASSERT_NO_FATAL_FAILURE(openOnTheLine());
    EXPECT_TRUE(waitFor([this] { return transfer().totalBytesRead() > 0; }));
    click("btnSend10K");
    takeAll(10'000);
    EXPECT_TRUE(taken_ == patterns(1));
    pty_.hangUp();
    EXPECT_TRUE(waitFor([this] { return presented() == 0; }));
    settle();
    EXPECT_NE(text("lblWhy"), QString());
}

// More than the line and the channel take while nobody reads: the rest waits in the session.
TEST_F(ConsoleOnALine, WhatNobodyTakesYetWaitsAndArrivesWholeAndInOrder) {
    constexpr int kTimes = 12;
    ASSERT_NO_FATAL_FAILURE(openOnTheLine());
    for (int time = 0; time < kTimes; ++time) click("btnSend10K");
    settle();
    Bytes expected = patterns(kTimes);
    EXPECT_GT(expected.size(), platform::ByteChannel::kBufferLimit);
    transfer()._hexToSendTextField.edit(QStringLiteral("7e0d"));
    click("btnSendHex");
    expected.insert(expected.end(), {0x7e, 0x0d});
    takeAll(expected.size());
    EXPECT_TRUE(taken_ == expected);
}

}  // namespace
}  // namespace kestrix::shell
