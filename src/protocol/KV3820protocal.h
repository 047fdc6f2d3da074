#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

#include "protocol/MeterReading.h"

namespace kestrix::protocol {

// Decodes one frame of the tester into one MeterReading. One decoder per frame: it is created, decodes once,
// is read and dropped. It never fails: a frame that it does not understand leaves the record all-zero
// (iFunction 0).
class KV3820protocal {
  public:
    // frame: pairs of hexadecimal digits, lower case ("7e0d1e..."); an odd last character is dropped.
    // A low letter is read in the case of its high letter, so "1a" is 0x1A and "1A" is not.
    KV3820protocal& initFromString(std::string_view frame);

    // frame: the frame's bytes, at least 31; fewer give the all-zero record.
    KV3820protocal& initFromNSdata(std::span<const std::uint8_t> frame);

    // Clears bRecord and nothing else.
    void initStructAndValue();

    MeterReading getAllDataStructValue() const& { return record_; }
    MeterReading getAllDataStructValue() && { return std::move(record_); }

    const MeterReading& return3820data() const { return record_; }
    void setReturn3820data(MeterReading record) { record_ = std::move(record); }

  private:
    MeterReading record_;
};

}  // namespace kestrix::protocol
