#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "live/MeterDisplay.h"
#include "tests/display/Records.h"

namespace kestrix::live {

using display::recordOf;
using display::sequenceRecord;

// The display alone, with the labels that the live screen gives it.
class BuiltDisplay final : public MeterDisplay {
  public:
    BuiltDisplay() { loadView(); }
    void viewDidLoad() override {
        buildReadings();
        buildTitles();
    }
};

// As in a process that has just begun.
inline void resetDisplayState() {
    MeterDisplay::counters = {};
}

// Adds `name` for labels that are all shown, nothing for labels that are all hidden.
inline void addShown(std::string& shown, const char* name, std::initializer_list<const ui::Label*> labels) {
    std::size_t hidden = 0;
    for (const ui::Label* label : labels) hidden += label->hidden() ? 1 : 0;
    if (hidden == labels.size()) return;
    if (!shown.empty()) shown += ' ';
    shown += hidden == 0 ? name : std::string("part-of-") + name;
}

// What is to be seen, such as "D1 D2", "rows1-4 rows5-6 values1-6", "rows1-4 value3", "values1-6".
inline std::string shownLabels(const MeterDisplay& display) {
    std::string shown;
    addShown(shown, "D1", {&display.D1Value, &display.D1Unit});
    addShown(shown, "D2", {&display.D2Value, &display.D2Unit});
    const auto& rows = display.rcdRows;
    const auto& [r1, r2, r3, r4, r5, r6] = rows;
    addShown(shown, "rows1-4",
             {&r1.Row, &r1.Angle, &r1.Unit, &r2.Row, &r2.Angle, &r2.Unit, &r3.Row, &r3.Angle, &r3.Unit,
              &r4.Row, &r4.Angle, &r4.Unit});
    addShown(shown, "rows5-6", {&r5.Row, &r5.Angle, &r5.Unit, &r6.Row, &r6.Angle, &r6.Unit});
    std::string values;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (!rows[i].Value.hidden()) values += " value" + std::to_string(i + 1);
    }
    if (values == " value1 value2 value3 value4 value5 value6") values = " values1-6";
    shown += values;
    return shown.starts_with(' ') ? shown.substr(1) : shown;
}

// The texts of the six trip times, each in brackets: "[18][ ][ ][ ][ ][ ]".
inline std::string tripTimes(const MeterDisplay& display) {
    std::string texts;
    for (const RcdRow& row : display.rcdRows) texts += "[" + row.Value.text().toStdString() + "]";
    return texts;
}
inline constexpr const char* kNoTripTimes = "[ ][ ][ ][ ][ ][ ]";

// A display as it is while the tester is not there: all but the RCD values hidden.
class DisplayFixture : public ::testing::Test {
  protected:
    DisplayFixture() {
        resetDisplayState();
        for (std::int32_t group = 1; group <= 4; ++group) display_.setHiddenLable(group, true);
        display_.ClearRCDValue();
    }
    ~DisplayFixture() override { resetDisplayState(); }

    void receive(const protocol::MeterReading& record) { display_.didReceive3820Data(record, true); }
    void receiveRunning(int count, const char* tripTime = "18") {
        for (int i = 0; i < count; ++i) receive(sequenceRecord(1, tripTime));
    }

    BuiltDisplay display_;
};

}  // namespace kestrix::live
