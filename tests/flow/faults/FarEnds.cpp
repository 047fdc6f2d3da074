#include <gtest/gtest.h>

#include "apps/common/SimulatorSource.h"
#include "tests/flow/faults/BluetoothFarEnd.h"
#include "tests/flow/faults/FarEnd.h"
#include "tests/flow/faults/LineFarEnd.h"
#include "tests/flow/faults/SerialFarEnd.h"

namespace kestrix::faults {

const char* nameOf(Kind kind) {
    switch (kind) {
        case kLine:
            return "line";
        case kTcp:
            return "tcp";
        case kSerial:
            return "serial";
        case kBluetooth:
            return "bluetooth";
        case kReplay:
            return "replay";
        case kSimulator:
            return "simulator";
    }
    return "";
}

std::unique_ptr<FarEnd> makeFarEnd(Kind kind, const Bytes& capture, const std::string& scenario) {
    switch (kind) {
        case kLine:
            return std::make_unique<LineFarEnd>();
        case kTcp:
            return makeTcpFarEnd();
        case kSerial:
            return std::make_unique<SerialFarEnd>();
        case kBluetooth:
            return std::make_unique<BluetoothFarEnd>();
        case kReplay:
            return makeReplayFarEnd(capture);
        case kSimulator:
            return makeSimulatorFarEnd(scenario);
    }
    return nullptr;
}

std::unique_ptr<platform::AccessorySource> sourceOf(const std::string& uri, platform::Scheduler& scheduler,
                                                    platform::ListenerFactory listeners) {
    auto made = platform::makeAccessorySource(uri, scheduler, app::simulatorSource, std::move(listeners));
    EXPECT_NE(made.source, nullptr) << made.problem;
    return std::move(made.source);
}

}  // namespace kestrix::faults
