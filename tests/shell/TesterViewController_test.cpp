#include "shell/TesterViewController.h"

#include <gtest/gtest.h>

#include "tests/support/FakeListing.h"
#include "tests/support/FakeSource.h"
#include "tests/support/Printing.h"
#include "tests/support/TestServices.h"

namespace kestrix::shell {
namespace {

using platform::FailedStep;
using platform::SeenAccessory;
using testing::FakeListing;

using Asked = std::vector<std::string>;

class TesterViewControllerTest : public ::testing::Test {
  protected:
    TesterViewControllerTest() {
        parts_.makeListings = [this] {
            std::vector<std::unique_ptr<platform::AccessoryListing>> listings;
            listings.push_back(std::make_unique<FakeListing>("serial", ports_));
            listings.push_back(std::make_unique<FakeListing>("bluetooth", paired_));
            return listings;
        };
    }
    TesterViewController& screen() {
        if (!screen_) {
            screen_.emplace(ui::ScreenId::Tester, parts_.services());
            screen_->loadView();
        }
        return *screen_;
    }
    // Group, name and state of each row.
    std::vector<std::string> rows() {
        std::vector<std::string> rows;
        for (int row = 0; row < screen().rows.count(); ++row) {
            const ui::TableRow& shown = screen().rows.at(row);
            rows.push_back((shown.group + u'|' + shown.texts.join(u'|')).toStdString());
        }
        return rows;
    }
    void passQuarterOfASecond() { parts_.scheduler.advance(std::chrono::milliseconds(250)); }
    std::string state() { return screen().lblTesterState.text().toStdString(); }
    testing::FakeSource& addSource() {
        auto source = std::make_unique<testing::FakeSource>();
        testing::FakeSource& added = *source;
        parts_.accessories.addSource(std::move(source));
        return added;
    }
    void connect(testing::FakeSource& source) {
        parts_.accessories.registerForLocalNotifications();
        source.appear(
            std::make_shared<platform::Accessory>(platform::Accessory{1, "KX 1", {"p"}, nullptr, &source}));
    }

    testing::TestServices parts_;
    testing::Seen ports_;
    testing::Seen paired_;

  private:
    std::optional<TesterViewController> screen_;
};

TEST_F(TesterViewControllerTest, ListsWhatCanBeSeenByItsKind) {
    paired_.accessories = {{"bluetooth:AA:BB:CC:DD:EE:FF", "KX 1", "paired"}};
    ports_.accessories = {
        {"serial:/dev/ttyUSB0", "ttyUSB0", "a serial port"},
        {"serial:/dev/ttyS0", "ttyS0", "a serial port", FailedStep::Rights, "no right to open it"}};
    EXPECT_EQ(
        rows(),
        (std::vector<std::string>{
            "Bluetooth|Any paired tester|The one used last first",
            "Bluetooth|KX 1|paired",
            "Serial ports|ttyUSB0|a serial port",
            "Serial ports|ttyS0|no right to open it. Ask for the right to use serial ports (group dialout).",
            "Without a tester|Built-in tester|Simulated: nothing is measured",
        }));
}

TEST_F(TesterViewControllerTest, SaysWhyAKindCannotBeLookedForAndWhatToDo) {
    paired_.step = FailedStep::Adapter;
    paired_.problem = "Bluetooth is switched off: switch it on";
    EXPECT_EQ(rows().front(), "Bluetooth|Any paired tester|Bluetooth is switched off: switch it on");
    EXPECT_EQ(rows().at(1), "Serial ports||No serial port is there");
}

TEST_F(TesterViewControllerTest, FollowsWhatComesAndGoes) {
    EXPECT_EQ(rows().size(), 3U);
    ports_.accessories = {{"serial:/dev/ttyUSB0", "ttyUSB0", "a serial port"}};
    ports_.tell();
    passQuarterOfASecond();
    EXPECT_EQ(rows().at(1), "Serial ports|ttyUSB0|a serial port");
    ports_.accessories.clear();
    ports_.tell();
    passQuarterOfASecond();
    EXPECT_EQ(rows().at(1), "Serial ports||No serial port is there");
}

TEST_F(TesterViewControllerTest, OfManyChangesAtOnceTheRowsAreMadeOnce) {
    paired_.accessories = {{"bluetooth:AA:BB:CC:DD:EE:FF", "KX 1", "paired"}};
    screen();
    int resets = 0;
    QObject::connect(&screen().rows, &QAbstractItemModel::modelReset, [&] { ++resets; });
    for (int change = 0; change < 100; ++change) {
        paired_.accessories.front().uri = "bluetooth:" + std::to_string(change);
        (*paired_.changed)();
    }
    EXPECT_EQ(resets, 0);
    passQuarterOfASecond();
    EXPECT_EQ(resets, 1);
}

TEST_F(TesterViewControllerTest, TellsTestersOfOneNameApart) {
    paired_.accessories = {{"bluetooth:AA:BB:CC:DD:EE:01", "KX", "paired"},
                           {"bluetooth:AA:BB:CC:DD:EE:02", "KX", "paired"},
                           {"bluetooth:AA:BB:CC:DD:EE:03", "KY", "paired"}};
    EXPECT_EQ(rows().at(1), "Bluetooth|KX (AA:BB:CC:DD:EE:01)|paired");
    EXPECT_EQ(rows().at(2), "Bluetooth|KX (AA:BB:CC:DD:EE:02)|paired");
    EXPECT_EQ(rows().at(3), "Bluetooth|KY|paired");
}

TEST_F(TesterViewControllerTest, StaysWhileTheUserTypes) {
    testing::FakeSource& source = addSource();
    screen().choose("fake:");
    screen().capture.setEditing(true);
    connect(source);
    EXPECT_EQ(parts_.asked, (Asked{"choose fake:"}));
    EXPECT_EQ(state(), "Connected");
}

TEST_F(TesterViewControllerTest, StaysOnceTheUserHasTypedSomethingElse) {
    testing::FakeSource& source = addSource();
    screen().choose("fake:");
    screen().capture.edit(QStringLiteral("site"));
    connect(source);
    EXPECT_EQ(parts_.asked, (Asked{"choose fake:"}));
}

TEST_F(TesterViewControllerTest, KeepsTheKeyboardsRowWhileOnlyStatesChange) {
    paired_.accessories = {{"bluetooth:AA:BB:CC:DD:EE:FF", "KX 1", "paired"}};
    screen().testers.setCurrentRow(1);
    int resets = 0;
    QObject::connect(&screen().rows, &QAbstractItemModel::modelReset, [&] { ++resets; });
    paired_.accessories[0].state = "connected";
    paired_.tell();
    passQuarterOfASecond();
    EXPECT_EQ(rows().at(1), "Bluetooth|KX 1|connected");
    EXPECT_EQ(resets, 0);
    EXPECT_EQ(screen().testers.currentRow(), 1);
}

TEST_F(TesterViewControllerTest, ListsTheCapturesOfTheFolder) {
    for (const char* name : {"b.kxc", "a.kxc", "notes.txt"}) {
        QFile file(parts_.folder.filePath(QLatin1String(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    EXPECT_EQ(rows().at(2), "Captures in this folder|a.kxc|Kept bytes of a tester, played again");
    EXPECT_EQ(rows().at(3), "Captures in this folder|b.kxc|Kept bytes of a tester, played again");
    screen().testers.choose(2);
    EXPECT_EQ(parts_.asked,
              (Asked{"choose replay:" + parts_.folder.filePath(QStringLiteral("a.kxc")).toStdString()}));
}

TEST_F(TesterViewControllerTest, ListsACaptureThatComesAndNoneThatHasGone) {
    const QString path = parts_.folder.filePath(QStringLiteral("late.kxc"));
    const auto isListed = [this] {
        passQuarterOfASecond();
        const auto all = rows();
        return std::any_of(all.begin(), all.end(), [](const std::string& row) {
            return row.find("|late.kxc|") != std::string::npos;
        });
    };
    EXPECT_FALSE(isListed());
    ASSERT_TRUE(QFile(path).open(QIODevice::WriteOnly));
    EXPECT_TRUE(testing::spinUntil(isListed));
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_TRUE(testing::spinUntil([&] { return !isListed(); }));
}

TEST_F(TesterViewControllerTest, HasTheChosenRowLookedFor) {
    paired_.accessories = {{"bluetooth:AA:BB:CC:DD:EE:FF", "KX 1", "paired"}};
    screen().testers.choose(1);
    screen().testers.choose(0);
    EXPECT_EQ(parts_.asked, (Asked{"choose bluetooth:AA:BB:CC:DD:EE:FF", "choose bluetooth:"}));
}

TEST_F(TesterViewControllerTest, DoesNothingForARowThatIsOnlyAReason) {
    screen().testers.choose(1);
    EXPECT_EQ(parts_.asked, Asked{});
}

TEST_F(TesterViewControllerTest, TellsHowTheSearchGoesInItsRow) {
    testing::FakeSource& source = addSource();
    paired_.accessories = {{"fake:", "KX 1", "paired"}};
    EXPECT_EQ(rows().at(1), "Bluetooth|KX 1|Chosen: Looking for it");
    source.tell({.step = FailedStep::NoAnswer, .problem = "out of reach"});
    EXPECT_EQ(rows().at(1), "Bluetooth|KX 1|Chosen: out of reach. Switch the tester on and bring it near.");
    EXPECT_EQ(state(), "Disconnected: out of reach. Switch the tester on and bring it near.");
    connect(source);
    EXPECT_EQ(rows().at(1), "Bluetooth|KX 1|Chosen: Connected");
    EXPECT_EQ(state(), "Connected");
    EXPECT_EQ(screen().lblTesterName.text(), QStringLiteral("KX 1"));
    EXPECT_EQ(parts_.asked, Asked{}) << "nothing was chosen here, so the screen stays";
}

TEST_F(TesterViewControllerTest, ClosesOnceTheChosenTesterIsConnected) {
    testing::FakeSource& source = addSource();
    screen().choose("fake:");
    EXPECT_EQ(parts_.asked, (Asked{"choose fake:"}));
    connect(source);
    EXPECT_EQ(parts_.asked, (Asked{"choose fake:", "dismiss animated"}));
    EXPECT_EQ(parts_.notice.text(), QString()) << "what stands there for seconds may be over";
    source.tell({});
    EXPECT_EQ(parts_.asked.size(), 2U) << "it closes once";
}

TEST_F(TesterViewControllerTest, StaysAndSaysSoWhenTheChoiceIsRefused) {
    ui::ChosenTester answer{.problem = "no such file"};
    parts_.chooseTester = [&](const std::string&) { return answer; };
    screen().choose("replay:nothing");
    EXPECT_EQ(parts_.notice.text(), QStringLiteral("no such file"));
    screen().address.setText(QStringLiteral("nohost"));
    screen().pressConnect();
    EXPECT_EQ(parts_.notice.text(), QStringLiteral("Type an address as in 192.168.1.20:4000"))
        << "the newest mistake counts";
    answer = {.otherWindow = true};
    screen().choose("simulator:");
    EXPECT_EQ(parts_.notice.text(), QStringLiteral("It has a window of its own, with its own records"));
    EXPECT_EQ(parts_.asked, Asked{});
}

TEST_F(TesterViewControllerTest, TakesAnAddressOfTheNetwork) {
    screen().address.setText(QStringLiteral(" 192.168.1.20:4000 "));
    screen().btnConnect.press();
    screen().address.setText(QStringLiteral("[::1]:4000"));
    screen().address.pressReturn();
    EXPECT_EQ(parts_.asked, (Asked{"choose tcp://192.168.1.20:4000", "choose tcp://[::1]:4000"}));
}

TEST_F(TesterViewControllerTest, TakesAnyUriWhereAnAddressIsTyped) {
    screen().address.setText(QStringLiteral("serial:/dev/ttyUSB0?baud=19200"));
    screen().pressConnect();
    EXPECT_EQ(parts_.asked, (Asked{"choose serial:/dev/ttyUSB0?baud=19200"}));
}

TEST_F(TesterViewControllerTest, SaysHowAnAddressIsWritten) {
    for (const char* wrong : {"", "host", "host:0", "host:70000", "a b:1", "host:1?x=y"}) {
        parts_.notice.clear();
        screen().address.setText(QLatin1String(wrong));
        screen().pressConnect();
        EXPECT_EQ(parts_.notice.text(), QStringLiteral("Type an address as in 192.168.1.20:4000")) << wrong;
    }
    EXPECT_EQ(parts_.asked, Asked{});
}

TEST_F(TesterViewControllerTest, OpensACaptureByItsPath) {
    screen().capture.setText(QStringLiteral("/srv/site one.kxc"));
    screen().btnOpen.press();
    screen().capture.setText(QStringLiteral("site.kxc"));
    screen().btnOpen.press();
    screen().capture.setText(QStringLiteral("~/site.kxc"));
    screen().capture.pressReturn();
    screen().capture.setText(QStringLiteral("/srv/a?speed=max"));
    screen().btnOpen.press();
    EXPECT_EQ(parts_.asked,
              (Asked{"choose replay:/srv/site one.kxc",
                     "choose replay:" + parts_.folder.filePath(QStringLiteral("site.kxc")).toStdString(),
                     "choose replay:" + QDir::homePath().toStdString() + "/site.kxc",
                     "choose replay:/srv/a?speed=max?speed=1"}));
    screen().capture.setText(QString());
    screen().pressOpen();
    EXPECT_EQ(parts_.notice.text(), QStringLiteral("Type the name of a capture's file"));
}

}  // namespace
}  // namespace kestrix::shell
