#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "protocol/FrameLayout.h"
#include "protocol/ValData.h"

namespace kestrix::protocol {

// The bytes of one frame.
using FrameBytes = std::array<std::uint8_t, frame::kLength>;

// The decoded content of one frame: a plain value, copied whole. All-zero until a decoder fills it.
// Voltages are in volts; flags are 0 or 1; texts are UTF-8.
struct MeterReading {
    bool bRecord = false;         // always false: recording is the user's action
    std::uint8_t bWarnFlag = 0;   // warning symbol
    std::uint8_t bCalFlag = 0;    // zero/calibration (lead null) active
    std::uint8_t bBeepFlag = 0;   // beeper on
    std::uint8_t bHoldFlag = 0;   // display hold
    std::uint8_t bLockFlag = 0;   // test-button lock
    std::uint8_t bAlarmFlag = 0;  // limit exceeded
    std::uint8_t bHighFlag = 0;   // always 0
    std::uint8_t bTestFlag = 0;   // a test is running
    std::uint8_t bTestRet = 0;    // pass/fail bit
    std::uint8_t bTest = 0;       // RCD only
    std::uint8_t iFunction = 0;   // ASCII '1' to '7'; 0 when the frame held nothing
    std::uint8_t iSubFunc = 0;    // settings 1 to 4: raw frame bytes
    std::uint8_t iSubFuncF2 = 0;
    std::uint8_t iSubFuncF3 = 0;
    std::uint8_t iSubFuncF4 = 0;

    ValData ValData1;  // the readings of the display, main reading first
    ValData ValData2;
    ValData ValData3;
    ValData ValData4;

    ValData x120;    // RCD auto test: half the rated current at 0 degrees,
    ValData x12180;  //   at 180 degrees,
    ValData x10;     //   rated current at 0,
    ValData x1180;   //   at 180,
    ValData x50;     //   five times rated current at 0,
    ValData x5180;   //   at 180

    double dLpe = 0;  // line to protective earth; kNoDataValue when not measured
    double dNpe = 0;  // neutral to protective earth
    double dLn = 0;   // line to neutral
    double dUf = 0;   // fault (touch) voltage of an RCD test
    double dUl = 0;   // touch-voltage limit

    std::string strfunction;  // function name for display and storage
    std::string strValue1;    // main and second reading as shown
    std::string strValue2;
    std::string strUnit1;
    std::string strUnit2;
    std::string strF1Name;  // the function's settings: four name/value pairs
    std::string strF1Value;
    std::string strF2Name;
    std::string strF2Value;
    std::string strF3Name;
    std::string strF3Value;
    std::string strF4Name;
    std::string strF4Value;
    std::string strRCD1;  // empty in every decoded record
    std::string strRCD2;
    std::string strRCD3;
    std::string strRCD4;
    std::string strRCD5;
    std::string strRCD6;
    std::string strNpe;  // the wire voltages as shown, whole volts or "---"
    std::string strLpe;
    std::string strLn;
    std::string strUL;  // touch-voltage limit and fault voltage, labelled
    std::string strUF;
    std::uint8_t bottompicIndex = 0;  // connection picture, 0 to 5

    // What it was decoded from, as the tester sent it; zeros behind the end of a shorter frame, and for one
    // that was not understood.
    FrameBytes frame{};

    bool operator==(const MeterReading&) const = default;
};

}  // namespace kestrix::protocol
