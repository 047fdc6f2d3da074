// The whole road in one process: a tester on the network, its reading in the window, a press, a row on the
// disk.
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>
#include <variant>

#include "link/BluetoothConnect.h"
#include "simulator/Player.h"
#include "tests/shell/Scenarios.h"
#include "tests/storage/Connection.h"
#include "tests/support/EventLoop.h"
#include "tests/support/WindowFixture.h"

namespace kestrix::shell {
namespace {

class WholeRoad : public testing::WindowFixture {
  protected:
    void SetUp() override {
        ASSERT_TRUE(server_.listen(QHostAddress::LocalHost));
        options_.uris = {"tcp://127.0.0.1:" + std::to_string(server_.serverPort())};
        options_.wait = [this](std::chrono::milliseconds duration) {
            waited_ += duration;
            displayAtWait_ = onDisplay();
        };
        open();
    }
    // Turns the event loop; the time stands still.
    bool waitFor(const std::function<bool()>& condition) {
        return testing::spinUntil([&] {
            scheduler_.runDue();
            return condition();
        });
    }
    // The window finds the tester by its first bytes, and shows what it sends from then on.
    void switchOn(const char* scenario) {
        scheduler_.advance(std::chrono::milliseconds(500));  // it dials
        ASSERT_TRUE(waitFor([this] { return server_.hasPendingConnections(); }));
        socket_.reset(server_.nextPendingConnection());
        send(scenario);
        ASSERT_TRUE(waitFor([this] { return !isShown("lblNoCon"); }));
        send(scenario);
    }
    void send(const char* scenario) {
        auto parsed = simulator::parseScenario(scenario);
        ASSERT_TRUE(std::holds_alternative<simulator::Scenario>(parsed));
        simulator::Player player(std::get<simulator::Scenario>(std::move(parsed)));
        while (!player.finished()) {
            const std::vector<std::uint8_t> bytes = player.next().bytes;
            socket_->write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
        }
        socket_->flush();
    }
    void switchOff() { socket_->disconnectFromHost(); }
    bool shows(const char* value) {
        return isShown("D1Value") && text("D1Value") == QString::fromUtf8(value);
    }

    QTcpServer server_;
    std::unique_ptr<QTcpSocket> socket_;
    std::chrono::milliseconds waited_{0};
    QImage displayAtWait_;
};

TEST_F(WholeRoad, AReadingFromTheNetworkIsShownRecordedAndStored) {
    EXPECT_TRUE(isShown("lblNoCon"));
    switchOn(kInsulation);
    ASSERT_TRUE(waitFor([this] { return shows("186.4"); }));
    EXPECT_EQ(text("D1Unit"), QStringLiteral("MΩ"));
    EXPECT_FALSE(isShown("lblNoCon"));
    click("btnRecord");
    // It is on the disk when the press returns, before the window draws the row.
    storage::Connection database(databasePath());
    const auto rows = database.rows(
        "SELECT dataId, recordId, dataName, function, parameters, result, dateTime, comments, recordName "
        "FROM measurefrom");
    ASSERT_EQ(rows.size(), 1U);
    const live::SessionRow& row = screen().dataList()->row(0);
    EXPECT_EQ(rows[0], (std::vector<std::string>{"1", "0", "S_1", "INSULATION", row.Parameters,
                                                 "186.4MΩ,524V", row.DateTime, " ", ""}));
    settle();
    EXPECT_TRUE(isShown("sessionRow0"));

    send(kEarth);
    ASSERT_TRUE(waitFor([this] { return shows("14.3"); }));
    tap("btnRecord");
    EXPECT_EQ(database.value("SELECT group_concat(dataName || ' ' || result) FROM measurefrom"),
              "S_1 186.4MΩ,524V,S_2 14.3Ω,2.5mA");
}

TEST_F(WholeRoad, ATesterThatGoesIsGoneFromTheDisplayBeforeTheWaitBlocks) {
    // These say what has happened meanwhile.
    for (ui::Label* label : {&screen().lblWhyNotConnected, &screen().lblTester, &screen().lblTesterState})
        label->setTextColor(ui::Palette::clear);
    settle();
    const QImage notConnected = onDisplay();
    switchOn(kLowOhm);
    ASSERT_TRUE(waitFor([this] { return shows("OL"); }));
    settle();
    EXPECT_NE(onDisplay(), notConnected);
    switchOff();
    ASSERT_TRUE(waitFor([this] { return waited_.count() > 0; }));
    EXPECT_EQ(waited_, link::BluetoothConnect::kCloseDelay);
    EXPECT_EQ(displayAtWait_, notConnected);
    settle();
    EXPECT_EQ(onDisplay(), notConnected);
}

TEST_F(WholeRoad, ATesterThatComesBackIsShownAgain) {
    switchOn(kInsulation);
    ASSERT_TRUE(waitFor([this] { return shows("186.4"); }));
    click("btnRecord");
    switchOff();
    ASSERT_TRUE(waitFor([this] { return isShown("lblNoCon"); }));
    click("btnRecord");  // of what stood there last
    switchOn(kEarth);
    ASSERT_TRUE(waitFor([this] { return shows("14.3"); }));
    EXPECT_FALSE(isShown("lblNoCon"));
    click("btnRecord");
    storage::Connection database(databasePath());
    EXPECT_EQ(database.value("SELECT group_concat(function) FROM measurefrom"),
              "INSULATION,INSULATION,EARTH");
}

TEST_F(WholeRoad, ATesterThatFallsSilentIsGoneToo) {
    switchOn(kInsulation);
    ASSERT_TRUE(waitFor([this] { return shows("186.4"); }));
    scheduler_.advance(std::chrono::milliseconds(3100));
    settle();
    EXPECT_TRUE(isShown("lblNoCon"));
    EXPECT_FALSE(isShown("D1Value"));
}

}  // namespace
}  // namespace kestrix::shell
