// What can happen to a serial port and its node.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QSerialPort>

#include "tests/flow/faults/Fault.h"
#include "tests/flow/faults/SerialFarEnd.h"

namespace kestrix::faults {
namespace {

using namespace std::chrono_literals;
using platform::FailedStep;

// Whatever its rights, root may open it: while this lives, the process is somebody else's.
class AsNobody {
  public:
    AsNobody() {
        if (isRoot_) {
            EXPECT_EQ(::setresuid(kNobody, kNobody, 0), 0);
        }
    }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;
    ~AsNobody() {
        if (isRoot_) {
            EXPECT_EQ(::setresuid(0, 0, 0), 0);
        }
    }

  private:
    static constexpr uid_t kNobody = 65534;
    bool isRoot_ = ::getuid() == 0;
};

void changesRights(const SerialFarEnd& port, mode_t rights) {
    EXPECT_EQ(::chmod(port.terminal().toUtf8().constData(), rights), 0);
}

void hasGone(FaultWorld& world) {
    world.leaves();
    world.passes(20s);
    world.expect(Link::Gone);
    EXPECT_EQ(world.failedStep(), FailedStep::Missing);
    world.comesBack(Return::AtOnce);
}

// An open port goes on under whatever name.
void isRenamed(FaultWorld& world) {
    world.as<SerialFarEnd>().removeNode();
    const Bytes next = world.frame();
    world.passes(2s);
    world.hears(next);
    world.expect(Link::Connected, next);
    world.leaves();
    world.passes(10s);
    world.expect(Link::Gone);
    EXPECT_EQ(world.failedStep(), FailedStep::Missing);
    world.comesBack(Return::AtOnce);
}

void isBusy(FaultWorld& world) {
    auto& port = world.as<SerialFarEnd>();
    world.leaves();
    port.makeTerminal();
    port.makeNode();
    QSerialPort other(port.node());  // of the same name: root is kept out by the lock file alone
    ASSERT_TRUE(other.open(QIODevice::ReadWrite));
    world.passes(20s);
    world.expect(Link::Gone);
    EXPECT_EQ(world.failedStep(), FailedStep::Busy);
    other.close();
    world.comesBack();
}

void mayNotBeOpened(FaultWorld& world) {
    auto& port = world.as<SerialFarEnd>();
    world.leaves();
    port.makeTerminal();
    port.makeNode();
    changesRights(port, 0);
    {
        const AsNobody nobody;
        world.passes(20s);
        EXPECT_EQ(world.failedStep(), FailedStep::Rights);
    }
    world.expect(Link::Gone);
    changesRights(port, S_IRUSR | S_IWUSR);
    world.comesBack();
}

void isReplacedBy(FaultWorld& world, const std::function<bool(const QString& node)>& put) {
    world.leaves();
    EXPECT_TRUE(put(world.as<SerialFarEnd>().node()));
    world.passes(20s);
    world.expect(Link::Gone);
    EXPECT_NE(world.failedStep(), FailedStep::None);
    world.as<SerialFarEnd>().removeNode();
    world.comesBack(Return::AtOnce);
}

void isAFolder(FaultWorld& world) {
    isReplacedBy(world, [](const QString& node) { return QDir().mkdir(node); });
}

void isNoSerialPort(FaultWorld& world) {
    isReplacedBy(world, [](const QString& node) { return QFile::link(QStringLiteral("/dev/null"), node); });
}

void leadsNowhere(FaultWorld& world) {
    isReplacedBy(world,
                 [](const QString& node) { return QFile::link(node + QStringLiteral("-away"), node); });
}

constexpr Fault kSerialFaults[] = {
    {"DeviceGone", kSerial, hasGone},
    {"RenamedPort", kSerial, isRenamed},
    {"PortBusy", kSerial, isBusy},
    {"NoRights", kSerial, mayNotBeOpened},
    {"PortIsAFolder", kSerial, isAFolder},
    {"PortIsNoSerialPort", kSerial, isNoSerialPort},
    {"PortLeadsNowhere", kSerial, leadsNowhere},
};

}  // namespace

std::span<const Fault> serialFaults() {
    return kSerialFaults;
}

}  // namespace kestrix::faults
