#include "platform/AccessorySources.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <string>

#include "tests/support/ManualScheduler.h"

namespace kestrix::platform {
namespace {

class AccessorySourcesTest : public ::testing::Test {
  protected:
    SourceOrProblem make(const std::string& uri, const SimulatorFactory& simulator = {}) {
        return makeAccessorySource(uri, scheduler_, simulator, makeAnyByteListener);
    }
    testing::ManualScheduler scheduler_;
};

TEST_F(AccessorySourcesTest, EachKindIsMade) {
    const QTemporaryDir folder;
    const QString capture = folder.filePath(QStringLiteral("a.kxc"));
    ASSERT_TRUE(QFile(capture).open(QIODevice::WriteOnly));
    for (const std::string& uri :
         {std::string("tcp://localhost:4000"), std::string("serial:/dev/rfcomm0?baud=115200"),
          "replay:" + capture.toStdString() + "?speed=max"}) {
        const SourceOrProblem made = make(uri);
        ASSERT_NE(made.source, nullptr) << uri << ": " << made.problem;
        EXPECT_EQ(made.source->uri(), uri);
        EXPECT_EQ(made.source->state(), SearchState::Stopped);
    }
}

TEST_F(AccessorySourcesTest, TheSimulatorComesFromTheApplication) {
    std::string asked;
    const auto made = make("simulator:garage", [&](AccessoryUri& uri, std::string&) {
        asked = uri.target;
        return [](std::string&) -> std::unique_ptr<ByteProducer> { return nullptr; };
    });
    EXPECT_NE(made.source, nullptr);
    EXPECT_EQ(asked, "garage");
}

struct BadUri {
    const char* uri;
    const char* line;
    bool wrongUri;
};

TEST_F(AccessorySourcesTest, ABadUriIsRefusedWithOneClearLine) {
    const BadUri rows[] = {
        {"",
         "'' is not a source; expected tcp://host:port, serial:PORT?baud=9600, replay:FILE?speed=1 or "
         "simulator:SCENARIO",
         true},
        {"nonsense",
         "'nonsense' is not a source; expected tcp://host:port, serial:PORT?baud=9600, replay:FILE?speed=1 "
         "or simulator:SCENARIO",
         true},
        {"ftp://a:1", "ftp://a:1: unknown kind of source; known are tcp, serial, replay and simulator", true},
        {"tcp://a", "tcp://a: expected tcp://host:port with a port from 1 to 65535", true},
        {"tcp://a:0", "tcp://a:0: expected tcp://host:port with a port from 1 to 65535", true},
        {"tcp://a:1?b=c", "tcp://a:1?b=c: unknown option 'b'", true},
        {"serial:", "serial:: expected serial:PORT, as in serial:/dev/rfcomm0?baud=9600", true},
        {"serial:/dev/x?baud=fast",
         "serial:/dev/x?baud=fast: the baud rate is not a number from 1 to 4000000", true},
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
