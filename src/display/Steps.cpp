#include "display/Steps.h"

#include <limits>

#include "display/MeasurementTexts.h"

namespace kestrix::display {
namespace {

using protocol::MeterReading;

constexpr std::int32_t kLastRcdStep = 13;
constexpr std::uint32_t kMostCounted = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint8_t kSixRowsBelow = 2;  // of setting 2

void assign(Reading& reading, const std::string& value, const std::string& unit) {
    reading.value = value;
    reading.unit = unit;
}

bool isBlank(const std::string& text) {
    return text.find_first_not_of(' ') == std::string::npos;
}

void hideRcdRows(Display& display, bool hidden) {
    setHidden(display, kRcdRows1To4, hidden);
    setHidden(display, kRcdRows5And6, hidden);
}

// A running test gives one trip time on every second record, from the third on. Only the latest is shown.
void advanceRcdTest(Display& display, const MeterReading& record) {
    std::int32_t& step = display.counters.rcdStep;
    step = record.bTest != 0 ? step + 1 : 0;
    if (step > kLastRcdStep) step = 0;
    if (step == 1) return clearRcdValues(display);
    if (step < 3 || step % 2 == 0) return;
    RcdRow& row = display.rcdRows[static_cast<std::size_t>((step - 3) / 2)];
    row.value = record.strValue1;
    row.frame = record.frame;
    setHidden(display, kRcdValues, true);
    row.valueHidden = false;
    if (step == kLastRcdStep) step = 0;
}

void showRcdTest(Display& display, const MeterReading& record) {
    Counters& counters = display.counters;
    if (!display.first.hidden) {
        clearRcdValues(display);
        setHidden(display, kReadings, true);
    }
    if (record.iSubFuncF2 != counters.lastSubFuncF2) clearRcdValues(display);
    const bool sixRows = record.iSubFuncF2 < kSixRowsBelow;
    counters.showMode = sixRows ? 3 : 2;
    counters.lastSubFuncF2 = record.iSubFuncF2;
    setHidden(display, kRcdRows1To4, false);
    setHidden(display, kRcdRows5And6, !sixRows);
    advanceRcdTest(display, record);
}

void showOneReading(Display& display, const MeterReading& record) {
    setHidden(display, kRcdValues, true);
    display.counters.showMode = 1;
    assign(display.first, record.strValue1, record.strUnit1);
    setHidden(display, kFirstReadingOnly, false);
    hideRcdRows(display, true);
}

// Other functions switch groups only when the second reading is hidden: what is shown is left as it is.
void showTwoReadings(Display& display, const MeterReading& record) {
    display.counters.showMode = 0;
    assign(display.first, record.strValue1, record.strUnit1);
    assign(display.second, record.strValue2, record.strUnit2);
    if (display.second.hidden) {
        setHidden(display, kReadings, false);
        hideRcdRows(display, true);
    }
    clearRcdValues(display);
}

void noteFrames(Display& display, const MeterReading& record) {
    MeasuredFrames& measured = display.measured;
    if (measured.equalInARow == 0 || measured.reading != record.frame) {
        measured.reading = record.frame;
        measured.equalInARow = 1;
    } else if (measured.equalInARow < kMostCounted) {
        ++measured.equalInARow;
    }
    // The rows stay for a test of one trip time, whose texts do not have them.
    const bool isSequence = record.iFunction == '7';
    for (std::size_t row = 0; row < kRcdRows; ++row)
        measured.tripTimes[row] = isSequence ? display.rcdRows[row].frame : std::nullopt;
}

}  // namespace

void recordCame(Display& display, const MeterReading& record) {
    display.title = titleOf(record.iFunction);
    display.warning = record.bAlarmFlag != 0;
    display.strfunction = record.strfunction;
    display.intfunctions = record.iFunction;
    switch (record.iFunction) {
        case '7':
            showRcdTest(display, record);
            break;
        case '6':
            showOneReading(display, record);
            break;
        default:
            showTwoReadings(display, record);
    }
    describeMeasurement(display, record);
    noteFrames(display, record);
}

bool linkStateChanged(Display& display, std::int32_t state) {
    display.measured.equalInARow = 0;
    if (state == 1) {
        display.link = LinkState::Connected;
        return true;
    }
    if (state != 0) return false;
    display.link = LinkState::NotConnected;
    display.warning = false;
    display.title = Title::None;
    setHidden(display, kReadings, true);
    hideRcdRows(display, true);
    for (const RcdRow& row : display.rcdRows) display.rowsOfEarlierLink |= !isBlank(row.value);
    return true;
}

void setHidden(Display& display, std::int32_t group, bool hidden) {
    switch (group) {
        case kReadings:
        case kFirstReadingOnly:
            display.first.hidden = hidden;
            display.second.hidden = hidden || group == kFirstReadingOnly;
            break;
        case kRcdRows1To4:
            for (std::size_t i = 0; i < kFirstRcdRows; ++i) display.rcdRows[i].hidden = hidden;
            break;
        case kRcdRows5And6:
            for (std::size_t i = kFirstRcdRows; i < kRcdRows; ++i) display.rcdRows[i].hidden = hidden;
            break;
        case kRcdValues:
            for (RcdRow& row : display.rcdRows) row.valueHidden = hidden;
            break;
        default:
            break;
    }
}

void clearRcdValues(Display& display) {
    for (RcdRow& row : display.rcdRows) {
        row.value.assign(1, ' ');
        row.frame.reset();
    }
    display.rowsOfEarlierLink = false;
}

bool showsTripTime(const Display& display, std::size_t row) {
    const RcdRow& shown = display.rcdRows[row];
    return !shown.hidden && !shown.valueHidden && !isBlank(shown.value);
}

bool showsReading(const Display& display) {
    return display.link == LinkState::Connected && display.strfunction.has_value() &&
           (!display.first.hidden || !display.rcdRows[0].hidden);
}

}  // namespace kestrix::display
