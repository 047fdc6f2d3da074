#include "apps/kestrix-cli/ScreenJson.h"

#include <fmt/core.h>

#include <array>
#include <charconv>
#include <cstring>
#include <string_view>

#include "apps/kestrix-cli/JsonRoom.h"
#include "apps/kestrix-cli/JsonText.h"

namespace kestrix::cli {
namespace {

using display::Display;
using display::kRcdRows;

std::string hiddenText(bool hidden) {
    return hidden ? "\"hidden\":true}" : "\"hidden\":false}";
}

std::string constantLabel(const std::string& name, std::string_view text, bool hidden) {
    std::string out = "\"" + name + "\":{\"text\":";
    appendJsonText(out, text);
    return out + "," + hiddenText(hidden);
}

// What stands on an RCD row before and behind its trip time, by whether it is hidden. No record changes it.
struct RowParts {
    std::string beforeValue;
    std::array<std::string, 2> afterValue;  // by whether the trip time is hidden
};
using RowTable = std::array<std::array<RowParts, 2>, kRcdRows>;

RowTable makeRowTable() {
    RowTable table;
    for (std::size_t row = 0; row < kRcdRows; ++row) {
        const std::string stem = "RCD" + std::to_string(row + 1);
        const display::RcdRowTexts& texts = display::kRcdRowTexts[row];
        for (const bool hidden : {false, true}) {
            RowParts& parts = table[row][hidden ? 1 : 0];
            parts.beforeValue = fmt::format(R"(,{},{},"{}Value":{{"text":)",
                                            constantLabel(stem + "Row", texts.multiplier, hidden),
                                            constantLabel(stem + "Angle", texts.angle, hidden), stem);
            for (const bool valueHidden : {false, true})
                parts.afterValue[valueHidden ? 1 : 0] =
                    fmt::format(",{},{}", hiddenText(valueHidden),
                                constantLabel(stem + "Unit", display::kRcdUnit, hidden));
        }
    }
    return table;
}

class ScreenWriter {
  public:
    explicit ScreenWriter(char* at) : at_(at) {}

    char* at() const { return at_; }

    void display(const Display& display) {
        put("{\"strfunction\":");
        if (display.strfunction) {
            text(*display.strfunction);
        } else {
            put("null");
        }
        number(",\"intfunctions\":", display.intfunctions);
        put(",\"parameters\":");
        text(display.parameters);
        put(",\"results\":");
        text(display.results);
        number(",\"showMode\":", display.counters.showMode);
        number(",\"lastSubFuncF2\":", display.counters.lastSubFuncF2);
        number(",\"rcdStep\":", display.counters.rcdStep);
        put(",\"title\":");
        if (const display::TitleTexts* title = display::textsOf(display.title)) {
            text(title->name);
        } else {
            put("null");
        }
        put(",\"blueImage\":{");
        hidden(!display.warning);
        put(",\"labels\":{");
        label("\"D1Value\":{\"text\":", display.first.value, display.first.hidden);
        label(",\"D1Unit\":{\"text\":", display.first.unit, display.first.hidden);
        label(",\"D2Value\":{\"text\":", display.second.value, display.second.hidden);
        label(",\"D2Unit\":{\"text\":", display.second.unit, display.second.hidden);
        rows(display);
        put("}}");
    }

  private:
    void put(std::string_view part) {
        std::memcpy(at_, part.data(), part.size());
        at_ += part.size();
    }

    void text(std::string_view utf8) { at_ = putJsonText(at_, utf8); }

    void number(std::string_view key, std::int32_t value) {
        put(key);
        at_ = std::to_chars(at_, at_ + kNumberRoom, value).ptr;
    }

    void hidden(bool isHidden) { put(isHidden ? "\"hidden\":true}" : "\"hidden\":false}"); }

    void label(std::string_view key, std::string_view utf8, bool isHidden) {
        put(key);
        text(utf8);
        put(",");
        hidden(isHidden);
    }

    void rows(const Display& display) {
        static const RowTable table = makeRowTable();
        for (std::size_t i = 0; i < kRcdRows; ++i) {
            const display::RcdRow& row = display.rcdRows[i];
            const RowParts& parts = table[i][row.hidden ? 1 : 0];
            put(parts.beforeValue);
            text(row.value);
            put(parts.afterValue[row.valueHidden ? 1 : 0]);
        }
    }

    static constexpr std::ptrdiff_t kNumberRoom = 12;

    char* at_;
};

constexpr std::size_t kRoomWithoutTexts = 2560;  // of what stands there whatever the texts

std::size_t textBytes(const Display& display) {
    std::size_t bytes = display.parameters.size() + display.results.size();
    if (display.strfunction) bytes += display.strfunction->size();
    for (const display::Reading* reading : {&display.first, &display.second})
        bytes += reading->value.size() + reading->unit.size();
    for (const display::RcdRow& row : display.rcdRows) bytes += row.value.size();
    return bytes;
}

}  // namespace

void appendScreenJson(std::string& out, const Display& display) {
    appendWithin(out, kRoomWithoutTexts + kEscapedCharacter * textBytes(display), [&display](char* at) {
        ScreenWriter writer(at);
        writer.display(display);
        return writer.at();
    });
}

}  // namespace kestrix::cli
