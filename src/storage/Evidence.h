#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace kestrix::storage {

// Who measured.
enum class Origin : std::uint8_t { Measured, Simulated, Replayed };

// What the tester sent for a measurement, and from where it came.
struct Evidence {
    static constexpr std::size_t kTripTimes = 6;

    std::string frame{};  // that the reading was read from, as sent: 36 bytes; empty: not known
    // Of the trip times of an RCD sequence that stand in it, row by row: 36 bytes each, or empty.
    std::array<std::string, kTripTimes> tripTimeFrames{};
    std::uint32_t equalFrames = 0;  // that came one behind the other before the press, it included
    std::string source{};           // the kind of source: "bluetooth", "serial", "tcp"
    std::string accessory{};        // its name
    Origin origin = Origin::Measured;

    bool operator==(const Evidence&) const = default;
};

// When something was done.
struct Moment {
    std::int64_t utc = 0;        // milliseconds since 1970 began, UTC
    std::int32_t utcOffset = 0;  // of the local time then, in seconds
    std::int64_t sinceBoot = 0;  // milliseconds since the computer was started, its sleep included

    bool operator==(const Moment&) const = default;
};

// What was done with a measurement. Each is a row of the chain of its own.
enum class EvidenceEvent : std::uint8_t { Recorded, Filed, Deleted, PutBack };

using Sha256 = std::array<std::uint8_t, 32>;

// A row of the table `evidence`, as docs/database.md tells.
struct EvidenceRow {
    std::int64_t place = 0;  // in the chain, from 1 on
    EvidenceEvent event = EvidenceEvent::Recorded;
    std::string identity{};   // of the measurement: a UUID of version 7, 36 characters
    std::int64_t dataId = 0;  // of the measurement's row
    Sha256 measurement{};     // digestOf() that row, as it was then
    Evidence evidence{};      // of Recorded; empty for the others
    Moment moment{};
    std::string program{};  // "kestrix 0.1.0"
    Sha256 previous{};      // the hash of the row before; zeros in the first one
    Sha256 hash{};          // hashOf() this row

    bool operator==(const EvidenceRow&) const = default;
};

// Their names in the table and in the canonical form, in the order of the values.
inline constexpr std::array kOriginNames{"measured", "simulated", "replayed"};
inline constexpr std::array kEventNames{"recorded", "filed", "deleted", "put back"};

constexpr const char* nameOf(Origin origin) {
    return kOriginNames.at(static_cast<std::size_t>(origin));
}
constexpr const char* nameOf(EvidenceEvent event) {
    return kEventNames.at(static_cast<std::size_t>(event));
}

}  // namespace kestrix::storage
