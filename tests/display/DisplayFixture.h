#pragma once

#include <gtest/gtest.h>

#include <string>

#include "display/Steps.h"
#include "tests/display/Records.h"

namespace kestrix::display {

// What is to be seen, such as "D1 D2", "rows1-4 rows5-6 values1-6", "rows1-4 value3", "values1-6". Rows of
// which only a part is shown are named one by one.
inline std::string shownParts(const Display& display) {
    std::string shown;
    const auto add = [&shown](bool hidden, const std::string& name) {
        if (!hidden) shown += (shown.empty() ? "" : " ") + name;
    };
    add(display.first.hidden, "D1");
    add(display.second.hidden, "D2");
    std::string rows;
    std::string values;
    for (std::size_t i = 0; i < kRcdRows; ++i) {
        rows += display.rcdRows[i].hidden ? '.' : '#';
        values += display.rcdRows[i].valueHidden ? '.' : '#';
    }
    const std::string first = rows.substr(0, kFirstRcdRows);
    const std::string last = rows.substr(kFirstRcdRows);
    add(first == "....", first == "####" ? "rows1-4" : "rows" + first);
    add(last == "..", last == "##" ? "rows5-6" : "rows" + last);
    if (values == "######") {
        add(false, "values1-6");
    } else {
        for (std::size_t i = 0; i < kRcdRows; ++i) add(values[i] == '.', "value" + std::to_string(i + 1));
    }
    return shown;
}

// The texts of the six trip times, each in brackets: "[18][ ][ ][ ][ ][ ]".
inline std::string tripTimes(const Display& display) {
    std::string texts;
    for (const RcdRow& row : display.rcdRows) texts += "[" + row.value + "]";
    return texts;
}
inline constexpr const char* kNoTripTimes = "[ ][ ][ ][ ][ ][ ]";

// A display as it is while the tester is not there: all but the RCD values hidden.
class DisplayFixture : public ::testing::Test {
  protected:
    DisplayFixture() { linkStateChanged(display_, 0); }

    void receive(const protocol::MeterReading& record) { recordCame(display_, record); }
    void receiveRunning(int count, const char* tripTime = "18") {
        for (int i = 0; i < count; ++i) receive(sequenceRecord(1, tripTime));
    }
    void setTripTimes(const char* text) {
        for (RcdRow& row : display_.rcdRows) row.value = text;
    }

    Display display_;
};

}  // namespace kestrix::display
