#pragma once

#include <cstdint>

#include "protocol/MeterReading.h"

namespace kestrix::display {

// A record in which every text can be told from every other.
inline protocol::MeterReading recordOf(std::uint8_t function) {
    protocol::MeterReading record;
    record.iFunction = function;
    record.strfunction = "Function";
    record.strValue1 = "1.23";
    record.strUnit1 = "MΩ";
    record.strValue2 = "45.6";
    record.strUnit2 = "V";
    record.strF1Name = "Mode";
    record.strF1Value = "Auto";
    record.strF2Name = "Current";
    record.strF2Value = "30mA";
    record.strF3Name = "Type";
    record.strF3Value = "AC";
    record.strF4Name = "Limit";
    record.strF4Value = "25V";
    record.strLpe = "230";
    record.strNpe = "1";
    record.strLn = "229";
    record.strUL = "UL:50";
    record.strUF = "UF:2.5";
    return record;
}

// A record of the RCD sequence. mode: setting 2; bTest: the sequence runs.
inline protocol::MeterReading sequenceRecord(std::uint8_t bTest, const char* tripTime = "18",
                                             std::uint8_t mode = 0) {
    protocol::MeterReading record = recordOf('7');
    record.bTest = bTest;
    record.iSubFuncF2 = mode;
    record.strValue1 = tripTime;
    return record;
}

}  // namespace kestrix::display
