#include "apps/kestrix/TourStops.h"

namespace kestrix::tour {
namespace {

using enum Stop::Tester;

constexpr const char* kEarth = R"(
function earth
reading 1 18.5 ohm
reading 2 2.5 mA
show 1 frames
)";
constexpr const char* kInsulation = R"(
function insulation voltage=500
reading 1 199.9 Mohm
reading 2 528 V
show 1 frames
)";
constexpr const char* kLowOhm = R"(
function low-ohm
reading 1 0.22 ohm
reading 2 207 mA
show 1 frames
)";
constexpr const char* kVoltage = R"(
function voltage mode=L-PE
reading 1 230.4 V
reading 2 50.0 Hz
wires L-PE=230 N-PE=1 L-N=229
show 1 frames
)";
constexpr const char* kLoop = R"(
function loop mode=L-PE current=no-trip
touch-limit 50
wires L-PE=230 N-PE=0 L-N=230
on result
reading 1 0.62 ohm
reading 2 371 A
show 1 frames
)";
constexpr const char* kRcd = R"(
function rcd mode=x1 current=30 type=AC-G angle=0
touch-limit 50
wires L-PE=230 N-PE=0 L-N=230
reading 1 24.3 ms
reading 2 0.4 V
show 1 frames
)";
constexpr const char* kRcdSixRows = R"(
function rcd mode=auto current=30 type=AC-G
touch-limit 50
wires L-PE=230 N-PE=0 L-N=230
reading 2 0.3 V
show 1 frames
auto-sequence >1999 >1999 24.3 22.1 9.6 8.8
)";
// A sequence of four results: at this current there is no test at five times of it.
constexpr const char* kRcdFourRows = R"(
function rcd mode=auto current=300 type=DC-G
touch-limit 50
wires L-PE=230 N-PE=0 L-N=230
show 1 frames
on auto-test test
reading 1 dashes
show 1 frames
reading 1 >1999 ms
show 4 frames
reading 1 186 ms
show 2 frames
reading 1 174 ms
show 2 frames
)";
constexpr const char* kOverload = R"(
function insulation voltage=1000
reading 1 overload
reading 2 1055 V
show 1 frames
)";
constexpr const char* kNoData = R"(
function earth
reading 1 dashes
reading 2 dashes
show 1 frames
)";
constexpr const char* kAlarm = R"(
function loop mode=L-PE current=no-trip
touch-limit 50
wires L-PE=230 N-PE=0 L-N=230
on alarm
reading 1 184 ohm
reading 2 1.2 A
show 1 frames
)";

constexpr Stop kStops[] = {
    {"01-not-connected", Stays, nullptr, 0},
    {"02-earth", On, kEarth, 0},
    {"03-insulation", Stays, kInsulation, 0},
    {"04-low-ohm", Stays, kLowOhm, 0},
    {"05-voltage", Stays, kVoltage, 0},
    {"06-loop", Stays, kLoop, 0},
    {"07-rcd", Stays, kRcd, 0},
    {"08-rcd-auto-six-rows", Stays, kRcdSixRows, 0},
    {"09-rcd-auto-four-rows", Stays, kRcdFourRows, 0},
    {"10-overload", Stays, kOverload, 0},
    {"11-no-data", Stays, kNoData, 0},
    {"12-limit-exceeded", Stays, kAlarm, 0},
    {"13-one-row", Stays, kEarth, 1},
    {"14-three-rows", Stays, kLoop, 2},
    {"15-thirty-rows", Stays, kRcd, 27},
    {"16-link-down", Off, nullptr, 0},
};

}  // namespace

std::span<const Stop> stops() {
    return kStops;
}

}  // namespace kestrix::tour
