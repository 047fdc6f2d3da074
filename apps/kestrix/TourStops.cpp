#include "apps/kestrix/TourStops.h"

#include <optional>

#include "apps/kestrix/FullDisk.h"
#include "apps/kestrix/TourConsole.h"
#include "apps/kestrix/TourRoad.h"

namespace kestrix::tour {
namespace {

using enum Stop::Tester;
using enum Stop::Disk;

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
    {"01-not-connected", nullptr, Stays, 0},
    {"02-earth", kEarth, On, 0},
    {"03-insulation", kInsulation, Stays, 0},
    {"04-low-ohm", kLowOhm, Stays, 0},
    {"05-voltage", kVoltage, Stays, 0},
    {"06-loop", kLoop, Stays, 0},
    {"07-rcd", kRcd, Stays, 0},
    {"08-rcd-auto-six-rows", kRcdSixRows, Stays, 0},
    {"09-rcd-auto-four-rows", kRcdFourRows, Stays, 0},
    {"10-overload", kOverload, Stays, 0},
    {"11-no-data", kNoData, Stays, 0},
    {"12-limit-exceeded", kAlarm, Stays, 0},
    {"13-one-row", kEarth, Stays, 1},
    {"14-three-rows", kLoop, Stays, 2},
    {"15-not-stored", kInsulation, Stays, 1, Full},
    {"16-thirty-rows", kRcd, Stays, 26},
    {"17-link-down", nullptr, Off, 0},
    {"18-reading-of-before", nullptr, Stays, 1},
};

}  // namespace

std::span<const Stop> stops() {
    return kStops;
}

std::vector<std::string> pictures(const std::vector<shell::ScreenRow>& presented) {
    std::vector<std::string> names;
    for (const Stop& stop : kStops) names.emplace_back(stop.name);
    for (const Step& step : road(presented)) {
        if (!step.name.empty()) names.push_back(step.name);
    }
    for (const std::string& name : consolePictures()) names.push_back(name);
    return names;
}

void pressRecord(const Stop& stop, live::MainViewController& screen) {
    std::optional<FullDisk> full;
    if (stop.disk == Full) full.emplace();
    for (int press = 0; press < stop.presses; ++press) screen.btnRecord.press();
}

}  // namespace kestrix::tour
