#pragma once

// What a tester shows, one frame each unless it says otherwise.
namespace kestrix::shell {

inline constexpr const char* kEarth = R"(
function earth
reading 1 14.3 ohm
reading 2 2.5 mA
show 1 frame
)";
inline constexpr const char* kInsulation = R"(
function insulation voltage=500
reading 1 186.4 Mohm
reading 2 524 V
show 1 frame
)";
inline constexpr const char* kLowOhm = R"(
function low-ohm
reading 1 overload
reading 2 0 mA
on alarm
show 1 frame
)";
inline constexpr const char* kVoltage = R"(
function voltage mode=phase
reading 1 400 1.2.3
reading 2 50.0 Hz
wires L-PE=231 N-PE=0 L-N=231
show 1 frame
)";
inline constexpr const char* kLoop = R"(
function loop
touch-limit 50
reading 1 >1999 ohm
reading 2 dashes
wires L-PE=231 N-PE=0 L-N=231
show 1 frame
)";
inline constexpr const char* kRcd = R"(
function rcd mode=x1/2
reading 1 >1999 ms
wires L-PE=231 N-PE=0 L-N=231
on alarm
show 1 frame
)";
// A whole sequence.
inline constexpr const char* kRcdSixRows = R"(
function rcd mode=auto current=30
wires L-PE=230 N-PE=0 L-N=230
auto-sequence >1999 >1999 24.3 22.1 9.6 8.8
show 1 frame
)";
inline constexpr const char* kRcdFourRows = R"(
function rcd mode=auto current=300
wires L-PE=230 N-PE=0 L-N=230
auto-sequence >1999 >1999 24.3 22.1 9.6 8.8
on alarm
show 1 frame
)";

inline constexpr const char* kAll[] = {kEarth, kInsulation, kLowOhm,     kVoltage,
                                       kLoop,  kRcd,        kRcdSixRows, kRcdFourRows};

}  // namespace kestrix::shell
