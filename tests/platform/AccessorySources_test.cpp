#include "platform/AccessorySources.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTcpServer>
#include <QTemporaryDir>

#include <string>

#include "tests/support/EventLoop.h"
#include "tests/support/ManualScheduler.h"
#include "tests/support/SystemText.h"

namespace kestrix::platform {
namespace {

class AccessorySourcesTest : public ::testing::Test {
  protected:
    SourceOrProblem make(const std::string& uri, const SimulatorFactory& simulator = {}) {
        return makeAccessorySource(uri, scheduler_, simulator, makeAnyByteListener);
    }
    testing::ManualScheduler scheduler_;
};

struct NoObserver final : AccessorySourceObserver {
    void appeared(const AccessoryPtr&) override {}
    void disappeared(const AccessoryPtr&) override {}
};

// Each is known by what only its own way to a tester does.
TEST_F(AccessorySourcesTest, EachKindIsMade) {
    const QTemporaryDir folder;
    const std::string missing = folder.filePath(QStringLiteral("missing")).toStdString();
    const QString capture = folder.filePath(QStringLiteral("a.kxc"));
    ASSERT_TRUE(QFile(capture).open(QIODevice::WriteOnly));
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    NoObserver observer;

    const auto tcp = make("tcp://127.0.0.1:" + std::to_string(server.serverPort())).source;
    ASSERT_NE(tcp, nullptr);
    EXPECT_EQ(tcp->state(), SearchState::Stopped);
    const auto serial = make("serial:" + missing + "?baud=115200").source;
    ASSERT_NE(serial, nullptr);
    EXPECT_EQ(serial->uri(), "serial:" + missing + "?baud=115200");
    const auto replay = make("replay:" + capture.toStdString() + "?speed=max").source;
    ASSERT_NE(replay, nullptr);

    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere/bus");
    for (const char* uri : {"bluetooth:", "bluetooth:aa:bb:cc:dd:ee:ff"}) {
        const auto bluetooth = make(uri).source;
        ASSERT_NE(bluetooth, nullptr);
        bluetooth->start(observer);
        scheduler_.runDue();
        EXPECT_EQ(bluetooth->problem(),
                  "no Bluetooth without the system's message bus, which cannot be reached (" +
                      testing::systemText(ENOENT) + "): choose a serial port, or restart the computer");
        EXPECT_EQ(bluetooth->failedStep(), FailedStep::Adapter);
        bluetooth->stop();
    }
    qunsetenv("DBUS_SYSTEM_BUS_ADDRESS");

    serial->start(observer);
    scheduler_.runDue();
    EXPECT_EQ(serial->problem(), "no such port");
    EXPECT_EQ(serial->failedStep(), FailedStep::Missing);
    replay->start(observer);
    scheduler_.runOne();
    EXPECT_EQ(replay->state(), SearchState::Listening);
    scheduler_.runDue();
    EXPECT_EQ(replay->problem(), "the end of what there is to play");
    EXPECT_FALSE(server.hasPendingConnections());
    tcp->start(observer);
    scheduler_.runDue();
    EXPECT_TRUE(testing::spinUntil([&] { return server.hasPendingConnections(); }));
}

TEST_F(AccessorySourcesTest, EveryKindHasItsRow) {
    std::string schemes;
    for (const SourceKind& kind : sourceKinds()) {
        schemes += std::string(kind.scheme) + " ";
        EXPECT_TRUE(kind.form.starts_with(std::string(kind.scheme) + ":")) << kind.form;
        EXPECT_TRUE(parseAccessoryUri(kind.example)) << kind.example;
        EXPECT_NE(sourceForms().find(kind.form), std::string::npos) << kind.form;
    }
    EXPECT_NE(schemes.find("serial "), std::string::npos) << schemes;
}

TEST_F(AccessorySourcesTest, TheSimulatorComesFromTheApplication) {
    std::string asked;
    const auto made = make("simulator:garage", [&](AccessoryUri& uri) {
        asked = uri.target;
        return SimulatorOrProblem{
            [](std::string&) -> std::unique_ptr<ByteProducer> { return nullptr; }, {}, false};
    });
    EXPECT_NE(made.source, nullptr);
    EXPECT_EQ(asked, "garage");
}

struct BadUri {
    std::string uri;
    std::string line;
    bool wrongUri;
};

TEST_F(AccessorySourcesTest, ABadUriIsRefusedWithOneClearLine) {
    std::string schemes;  // "a, b and c"
    const auto kinds = sourceKinds();
    for (const SourceKind& kind : kinds)
        schemes += (&kind == &kinds.front()  ? ""
                    : &kind == &kinds.back() ? " and "
                                             : ", ") +
                   std::string(kind.scheme);
    const BadUri rows[] = {
        {"", "'' is not a source; expected " + sourceForms(), true},
        {"nonsense", "'nonsense' is not a source; expected " + sourceForms(), true},
        {"ftp://a:1", "ftp://a:1: unknown kind of source; known are " + schemes, true},
        {"tcp://a", "tcp://a: expected tcp://host:port with a port from 1 to 65535", true},
        {"tcp://a:0", "tcp://a:0: expected tcp://host:port with a port from 1 to 65535", true},
        {"tcp://a:1?b=c", "tcp://a:1?b=c: unknown option 'b'", true},
        {"serial:", "serial:: expected serial:PORT, as in serial:/dev/rfcomm0?baud=9600", true},
        {"serial:/dev/x?baud=fast",
         "serial:/dev/x?baud=fast: the baud rate is not a number from 1 to 4000000", true},
        {"bluetooth:tester",
         "bluetooth:tester: expected bluetooth: or an address, as in bluetooth:AA:BB:CC:DD:EE:FF", true},
        {"bluetooth:AA:BB:CC:DD:EE:FF?channel=1",
         "bluetooth:AA:BB:CC:DD:EE:FF?channel=1: unknown option 'channel'", true},
        {"replay:", "replay:: expected replay:FILE, as in replay:house.kxc?speed=max", true},
        {"replay:/none.kxc?speed=0",
         "replay:/none.kxc?speed=0: the speed is neither \"max\" nor a number from 0.1 to 100000", true},
        {"replay:/none.kxc", "replay:/none.kxc: No such file or directory", false},
        {"simulator:", "simulator:: there is no simulator in this program", false},
    };
    for (const BadUri& row : rows) {
        const SourceOrProblem made = make(row.uri);
        EXPECT_EQ(made.source, nullptr) << row.uri;
        EXPECT_EQ(made.problem, row.line);
        EXPECT_EQ(made.wrongUri, row.wrongUri) << row.uri;
    }
}

}  // namespace
}  // namespace kestrix::platform
