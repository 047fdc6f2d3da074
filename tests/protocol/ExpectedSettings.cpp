#include "tests/protocol/ExpectedSettings.h"

namespace kestrix::protocol::expected {

std::string insulationVoltage(int index) {
    if (index == 0) return "125v";
    if (index == 1) return "250v";
    if (index == 2) return "500";
    if (index == 3) return "1000";
    return "";
}

std::string insulationReference(int index) {
    if (index == 0) return "0.125MΩ";
    if (index == 1) return "0.25MΩ";
    if (index == 2) return "0.5MΩ";
    if (index == 3) return "1.0MΩ";
    if (index == 4) return "2.0MΩ";
    if (index == 5) return "5.0MΩ";
    if (index == 6) return "10.0MΩ";
    if (index == 7) return "20.0MΩ";
    if (index == 8) return "50.0MΩ";
    if (index == 9) return "100MΩ";
    if (index == 10) return "200MΩ";
    return "";
}

std::string continuityLimit(int index) {
    if (index == 0) return "0.5Ω";
    if (index == 1) return "1.0Ω";
    if (index == 2) return "2.0Ω";
    if (index == 3) return "5.0Ω";
    if (index == 4) return "10.0Ω";
    if (index == 5) return "20.0Ω";
    if (index == 6) return "50.0Ω";
    if (index == 7) return "100.0Ω";
    return "";
}

std::string voltageMode(int index) {
    if (index == 0) return "L-PE";
    if (index == 1) return "N-PE";
    if (index == 2) return "L-N";
    if (index == 3) return "Phase";
    return "";
}

std::string loopMode(int index) {
    if (index == 0) return "L-PE";
    if (index == 1) return "L-N";
    return "";
}

std::string loopCurrent(int index) {
    if (index == 0) return "NO Trip";
    if (index == 1) return "Hi Amp";
    return "";
}

std::string rcdMode(int mode) {
    if (mode == 0) return "Auto";
    if (mode == 1) return "X1/2";
    if (mode == 2) return "X1";
    if (mode == 3) return "X2";
    if (mode == 4) return "X5";
    if (mode == 5) return "RAMP";
    return "";
}

// The 10 mA range is always the last one; the modes with more current leave out the high ranges before it.
std::string rcdCurrent(int mode, int index) {
    if (mode > 5) return "";
    const bool isX5 = mode == 4;
    const bool isX2OrRamp = mode == 3 || mode == 5;
    const int last = isX5 ? 2 : isX2OrRamp ? 5 : 6;
    if (index == last) return "10mA";
    if (index > last) return "";
    if (index == 0) return "30mA";
    if (index == 1) return "100mA";
    if (index == 2) return "300mA";
    if (index == 3) return "500mA";
    if (index == 4) return "650mA";
    return "1000mA";
}

std::string rcdType(int index) {
    if (index == 0) return "AC G";
    if (index == 1) return "AC S";
    if (index == 2) return "DC G";
    if (index == 3) return "DC S";
    return "";
}

std::string rcdAngle(int index) {
    if (index == 0) return "0°";
    if (index == 1) return "180°";
    return "";
}

}  // namespace kestrix::protocol::expected
