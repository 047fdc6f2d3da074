// The table of link faults: every fault on every kind of source that it can happen to, each a test of its
// own, such as LinkFault.Silence/serial. In each of them a tester is connected and two measurements are
// recorded; then comes the fault; and each time the test looks it looks at the link state shown, the records
// delivered and the list kept.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/flow/faults/Fault.h"

namespace kestrix::faults {
namespace {

constexpr const char* kTwoFrames =
    "function low-ohm\nreading 1 0.01 ohm\nshow 1 frame\nreading 1 0.02 ohm\nshow 1 frame\n";

class LinkFault : public ::testing::Test {
  public:
    LinkFault(const Fault& fault, Kind kind) : fault_(fault), kind_(kind) {}

  private:
    void TestBody() override {
        const Bytes capture =
            frameOf(1) + frameOf(2) + (fault_.capture != nullptr ? fault_.capture() : Bytes());
        FaultWorld world(makeFarEnd(kind_, capture, std::string(kTwoFrames) + fault_.scenario));
        ASSERT_NO_FATAL_FAILURE(world.begin());
        fault_.script(world);
    }
    const Fault& fault_;
    Kind kind_;
};

constexpr std::span<const Fault> (*kTables[])() = {silenceFaults,   endFaults,  dialFaults, serialFaults,
                                                   bluetoothFaults, byteFaults, timeFaults, scenarioFaults};

// Answers the names of the rows.
std::set<std::string> registerAll() {
    std::set<std::string> names;
    for (const auto table : kTables) {
        for (const Fault& fault : table()) {
            names.insert(fault.name);
            for (const Kind kind : kKinds) {
                if ((fault.kinds & kind) == 0) continue;
                const std::string name = std::string(fault.name) + "/" + nameOf(kind);
                ::testing::RegisterTest(
                    "LinkFault", name.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                    [&fault, kind]() -> ::testing::Test* { return new LinkFault(fault, kind); });
            }
        }
    }
    return names;
}

const std::set<std::string> kNames = registerAll();

TEST(LinkFaults, AreAtLeastThirty) {
    EXPECT_GE(kNames.size(), 30U);
}

}  // namespace
}  // namespace kestrix::faults
