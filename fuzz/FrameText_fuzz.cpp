#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "protocol/KV3820protocal.h"
#include "tests/protocol/ExpectedRecord.h"
#include "tests/protocol/RecordDifference.h"

// Any text at all into the decoder: it never fails, its record always keeps its promises, and it is the
// record that the second reading of the frame format gives.

namespace {

using kestrix::protocol::firstDifference;
using kestrix::protocol::KV3820protocal;
using kestrix::protocol::MeterReading;
using kestrix::protocol::ValData;

constexpr std::size_t kDecodedCharacters = 62;  // 31 bytes; the decoder looks at nothing behind them

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

void requireEqual(const MeterReading& expected, const MeterReading& actual, const char* what) {
    const std::string difference = firstDifference(expected, actual);
    require(difference.empty(), (what + (": " + difference)).c_str());
}

MeterReading decoded(std::string_view text) {
    KV3820protocal decoder;
    decoder.initFromString(text);
    return decoder.getAllDataStructValue();
}

void checkReading(const ValData& reading) {
    require(reading.NoData <= 1 && reading.OlData <= 1 && reading.bLess <= 1,
            "flags of a reading are 0 or 1");
    require(reading.pointPosD1 <= 15, "at most 15 decimals");
    if (reading.NoData == 1) {
        require(reading.ValD1 == 5000001.0, "a reading without data holds its sentinel");
    } else if (reading.OlData == 1) {
        require(reading.ValD1 == 5000002.0, "an overload reading holds its sentinel");
    } else {
        require(reading.ValD1 >= -65535.0 && reading.ValD1 <= 65535.0, "a number is within the magnitudes");
    }
}

void checkInvariants(const MeterReading& record) {
    require(!record.bRecord, "bRecord stays false");
    require(record.bHighFlag == 0, "bHighFlag stays 0");
    for (const unsigned flag :
         {record.bWarnFlag, record.bCalFlag, record.bBeepFlag, record.bHoldFlag, record.bLockFlag,
          record.bAlarmFlag, record.bTestFlag, record.bTestRet, record.bTest}) {
        require(flag <= 1, "flags are 0 or 1");
    }
    require(record.iFunction == 0 || (record.iFunction >= '1' && record.iFunction <= '7'),
            "a known function");
    require(record.bottompicIndex <= 5, "a known picture");
    for (const ValData* reading :
         {&record.ValData1, &record.ValData2, &record.ValData3, &record.ValData4, &record.x120,
          &record.x12180, &record.x10, &record.x1180, &record.x50, &record.x5180}) {
        checkReading(*reading);
    }
    if (record.iFunction == 0) {
        requireEqual(MeterReading(), record, "a frame that held nothing leaves the record all-zero");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
    const MeterReading record = decoded(text);
    checkInvariants(record);
    requireEqual(record, decoded(text), "the same text decodes to the same record");
    requireEqual(record, decoded(text.substr(0, kDecodedCharacters)),
                 "only the first 31 bytes are looked at");
    requireEqual(kestrix::protocol::expectedRecord(kestrix::protocol::expectedBytes(text)), record,
                 "the record is the expected one");
    return 0;
}
