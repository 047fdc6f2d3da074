#pragma once

#include <string>

#include "protocol/MeterReading.h"

namespace kestrix::cli {

// What a decoder makes of a usual frame of the function ('1' to '7').
inline protocol::MeterReading exampleReading(char function) {
    protocol::MeterReading reading;
    reading.iFunction = static_cast<std::uint8_t>(function);
    const auto main = [&](const char* value, const char* unit, const char* second, const char* secondUnit) {
        reading.strValue1 = value;
        reading.strUnit1 = unit;
        reading.strValue2 = second;
        reading.strUnit2 = secondUnit;
    };
    const auto settings = [&](const char* name, const char* value, const char* name2, const char* value2) {
        reading.strF1Name = name;
        reading.strF1Value = value;
        reading.strF2Name = name2;
        reading.strF2Value = value2;
    };
    if (function >= '4') {
        reading.strLpe = "231";
        reading.strNpe = "2";
        reading.strLn = "229";
    }
    switch (function) {
        case '1':
            reading.strfunction = "EARTH";
            main("12.34", "Ω", "205", "mA");
            reading.strF4Name = "ZERO";
            break;
        case '2':
            reading.strfunction = "INSULATION";
            main("> 99.9", "MΩ", "525", "V");
            settings("Terminal voltage", "250v", "Beeper", "OFF");
            reading.strF3Name = "Lock";
            reading.strF3Value = "ON";
            reading.strF4Name = "Reference";
            reading.strF4Value = "0.125MΩ";
            reading.bLockFlag = 1;
            break;
        case '3':
            reading.strfunction = "LOW OHM";
            main("0.39", "Ω", "203", "mA");
            settings("Continuty", "0.5Ω", "Beeper", "ON");
            reading.strF4Name = "ZERO";
            reading.strF4Value = "PIC_CLRZERO";
            reading.bCalFlag = 1;
            reading.bBeepFlag = 1;
            break;
        case '4':
            reading.strfunction = "VOLTAGE/PHASE,Voltage";
            main("230.4", "V", "50.0", "HZ");
            settings("V/Phase", "L-PE", "", "");
            break;
        case '5':
            reading.strfunction = "LOOP/PFC";
            main("0.87", "Ω", "264", "A");
            settings("Loop/PFC", "L-PE", "Current", "NO Trip");
            reading.strF4Name = "ZERO";
            reading.strUL = "UL:50 V";
            break;
        case '6':
            reading.strfunction = "X1";
            main(">24.5", "mS", "", "");
            settings("RCD", "X1", "Trip current", "30mA");
            reading.strF3Name = "Type Of RCD";
            reading.strF3Value = "AC G";
            reading.strF4Name = "0°/180°";
            reading.strF4Value = "180°";
            reading.strUL = "UL:--- ";
            reading.strUF = "UF:0.3";
            break;
        default:
            reading.strfunction = "Auto";
            main("18.3", "mS", "31", "mA");
            settings("RCD", "Auto", "Trip current", "30mA");
            reading.x1180 = {18.3, "18.3", 1, "mS", 0, 0, 0};
            reading.strUL = "UL:50";
            reading.strUF = "UF:0.7";
            break;
    }
    return reading;
}

}  // namespace kestrix::cli
