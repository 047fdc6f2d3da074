#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "simulator/Player.h"
#include "simulator/Scenario.h"

// What the simulator's tests share: a text as a scenario, or as everything that it sends.
namespace kestrix::simulator {

using Bytes = std::vector<std::uint8_t>;

inline Scenario parsed(std::string_view text) {
    auto result = parseScenario(text);
    if (const auto* error = std::get_if<ScenarioError>(&result)) {
        ADD_FAILURE() << error->text();
        return {};
    }
    return std::get<Scenario>(std::move(result));
}

// The error of a text, or "no error".
inline std::string errorOf(std::string_view text) {
    const auto result = parseScenario(text);
    const auto* error = std::get_if<ScenarioError>(&result);
    return error != nullptr ? error->text() : "no error";
}

inline std::vector<Emission> emissionsOf(Scenario scenario, std::uint64_t seed = 1) {
    std::vector<Emission> emissions;
    Player player{std::move(scenario), seed};
    while (!player.finished()) emissions.push_back(player.next());
    return emissions;
}

inline std::vector<Emission> emissionsOf(std::string_view text, std::uint64_t seed = 1) {
    return emissionsOf(parsed(text), seed);
}

inline Bytes bytesOf(const std::vector<Emission>& emissions) {
    Bytes bytes;
    for (const Emission& emission : emissions) {
        bytes.insert(bytes.end(), emission.bytes.begin(), emission.bytes.end());
    }
    return bytes;
}

inline std::int64_t millisecondsOf(const std::vector<Emission>& emissions) {
    std::int64_t sum = 0;
    for (const Emission& emission : emissions) sum += emission.wait.count();
    return sum;
}

inline bool isFrame(const Bytes& bytes) {
    return bytes.size() == 36 && bytes[0] == 0x7E && bytes[1] == 0x0D && bytes[2] == 0x1E &&
           bytes[8] == 0x55 && bytes[9] == 0xAA;
}

// The one frame of a text that ends in "show 1 frame".
inline Bytes frameOf(std::string_view text) {
    const auto emissions = emissionsOf(text);
    if (emissions.size() != 1) {
        ADD_FAILURE() << emissions.size() << " emissions";
        return Bytes(36);
    }
    EXPECT_EQ(emissions[0].bytes.size(), 36U);
    Bytes bytes = emissions[0].bytes;
    bytes.resize(36);
    return bytes;
}

// Magnitude of a reading (1 to 4) in a frame.
inline int magnitudeIn(const Bytes& frame, std::size_t reading) {
    return frame.at(9 + 3 * reading) + 256 * frame.at(10 + 3 * reading);
}

inline std::uint8_t attributeIn(const Bytes& frame, std::size_t reading) {
    return frame.at(11 + 3 * reading);
}

}  // namespace kestrix::simulator
