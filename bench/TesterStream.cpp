#include "bench/TesterStream.h"

#include <variant>

#include "simulator/BuiltinScenarios.h"
#include "simulator/FrameEncoder.h"
#include "simulator/Player.h"

namespace kestrix::bench {

std::vector<std::uint8_t> testerStream(std::size_t frames) {
    auto scenario = simulator::parseScenario(*simulator::builtinScenario(simulator::kDefaultScenario));
    simulator::Player player(std::get<simulator::Scenario>(std::move(scenario)));
    std::vector<std::uint8_t> bytes;
    simulator::Emission emission;
    while (bytes.size() < frames * simulator::kFrameBytes) {
        player.next(emission);
        // Garbage at power-on is left out: both ways are to cut the same frames.
        if (emission.bytes.size() % simulator::kFrameBytes != 0) continue;
        bytes.insert(bytes.end(), emission.bytes.begin(), emission.bytes.end());
    }
    return bytes;
}

}  // namespace kestrix::bench
