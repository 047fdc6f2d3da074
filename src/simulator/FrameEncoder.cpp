#include "simulator/FrameEncoder.h"

#include <algorithm>

namespace kestrix::simulator {

namespace {

constexpr std::size_t kStatusByte = 24;
constexpr std::size_t kMissingByte = 25;
constexpr std::size_t kResultByte = 26;

struct Place {
    std::size_t byte;
    std::uint8_t value;  // added to the byte when the flag is on
};

struct FlagPlaces {
    Place beeper, zero, lock, testRunning;
};

// By function. Earth alone says "on" with the character '1', and loop and RCD share one bit between beeper
// and warning.
constexpr std::array<FlagPlaces, kFunctions> kFlagPlaces = {{
    {{kStatusByte, 0x08}, {6, 0x31}, {kStatusByte, 0x40}, {7, 0x31}},  // earth
    {{4, 1}, {kStatusByte, 0x20}, {5, 1}, {7, 1}},                     // insulation
    {{4, 1}, {6, 1}, {kStatusByte, 0x40}, {7, 1}},                     // low ohm
    {{4, 1}, {6, 1}, {kStatusByte, 0x40}, {7, 1}},                     // voltage
    {{kStatusByte, 0x80}, {6, 1}, {kStatusByte, 0x40}, {7, 1}},        // loop
    {{kStatusByte, 0x80}, {kStatusByte, 0x20}, {kStatusByte, 0x40}, {7, 1}},
}};

constexpr std::size_t kFirstSettingByte = 3;
constexpr std::size_t kFirstReadingByte = 12;

constexpr std::uint8_t low(std::uint16_t value) {
    return static_cast<std::uint8_t>(value & 0xFFU);
}
constexpr std::uint8_t high(std::uint16_t value) {
    return static_cast<std::uint8_t>(value >> 8U);
}

void add(Frame& frame, std::size_t byte, unsigned bits) {
    frame[byte] = static_cast<std::uint8_t>(frame[byte] | bits);
}

void putSettings(Frame& frame, const Display& display, const FlagPlaces& places) {
    for (std::size_t i = 0; i < kSettings; ++i) {
        const std::size_t byte = kFirstSettingByte + i;
        const auto taken = [byte](const Place& place) { return place.byte == byte; };
        if (taken(places.beeper) || taken(places.zero) || taken(places.lock)) continue;
        frame[byte] = display.settings[i];
    }
}

void putFlags(Frame& frame, const Display& display, const FlagPlaces& places) {
    const auto put = [&frame](bool on, const Place& place) {
        if (on) add(frame, place.byte, place.value);
    };
    put(display.beeper, places.beeper);
    put(display.zero, places.zero);
    put(display.lock, places.lock);
    put(display.testRunning, places.testRunning);
    put(display.warning, {kStatusByte, 0x80});
    put(display.hold, {kStatusByte, 0x02});
    put(display.alarm, {kResultByte, 0x01});
    put(display.result, {kResultByte, 0x04});
    put(display.autoTest && display.function == Function::Rcd, {kResultByte, 0x02});
    add(frame, kStatusByte, display.moreStatus);
}

std::uint8_t attribute(const Display& display, std::size_t index) {
    const Reading& reading = display.readings[index];
    const unsigned mark = reading.marked ? 0x80U : 0U;
    if (display.function == Function::Rcd && index == 0) {
        return static_cast<std::uint8_t>(mark | (reading.unitCode & 3U) << 5U |
                                         (reading.decimals & 1U) << 4U | (display.autoStep & 15U));
    }
    return static_cast<std::uint8_t>(mark | (reading.unitCode & 7U) << 4U | (reading.decimals & 15U));
}

void putReadings(Frame& frame, const Display& display) {
    for (std::size_t i = 0; i < kReadings; ++i) {
        const Reading& reading = display.readings[i];
        const std::size_t byte = kFirstReadingByte + 3 * i;
        frame[byte] = low(reading.magnitude);
        frame[byte + 1] = high(reading.magnitude);
        frame[byte + 2] = attribute(display, i);
        if (reading.overload) add(frame, kMissingByte, 0x01U << i);
        if (reading.noData) add(frame, kMissingByte, 0x10U << i);
    }
}

void putWires(Frame& frame, const Display& display) {
    if (!display.wiresPresent || display.function < Function::Voltage) return;
    add(frame, kStatusByte, display.thirdIsLinePe ? 0x09 : 0x08);
    frame[27] = low(display.wireA);
    frame[28] = high(display.wireA);
    frame[29] = low(display.wireB);
    frame[30] = high(display.wireB);
}

}  // namespace

Frame encodeFrame(const Display& display) noexcept {
    const auto function = static_cast<std::size_t>(display.function);
    const FlagPlaces& places = kFlagPlaces[std::min(function, kFunctions - 1)];
    Frame frame{0x7E, 0x0D, 0x1E};
    frame[8] = 0x55;
    frame[9] = 0xAA;
    frame[10] = static_cast<std::uint8_t>('1' + function);
    putSettings(frame, display, places);
    putReadings(frame, display);
    putFlags(frame, display, places);
    putWires(frame, display);
    return frame;
}

}  // namespace kestrix::simulator
