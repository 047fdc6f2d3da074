#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/kestrix-cli/ReadingTexts.h"
#include "apps/kestrix-cli/TerminalDisplay.h"
#include "apps/kestrix-cli/TerminalText.h"

namespace kestrix::cli {
namespace {

constexpr std::string_view kBetweenGroups = "  ";
constexpr std::string_view kWithinGroup = ", ";

class Line {
  public:
    void group(const std::string& text) { add(text, kBetweenGroups); }

    void group(const std::vector<NamedText>& texts) {
        std::string_view between = kBetweenGroups;
        for (const auto& [name, value] : texts) {
            add(std::string(name).append("=").append(value), between);
            between = kWithinGroup;
        }
    }

    std::string text() && { return std::move(text_); }

  private:
    void add(const std::string& text, std::string_view between) {
        if (text.empty()) return;
        if (!text_.empty()) text_ += between;
        text_ += text;
    }

    std::string text_;
};

}  // namespace

std::string renderLine(const protocol::MeterReading& reading) {
    if (reading.iFunction == 0) return "(no reading)";
    auto tripTimes = tripTimesOf(reading);
    std::erase_if(tripTimes, [](const NamedText& slot) { return slot.value.empty(); });

    Line line;
    line.group(printable(reading.strfunction));
    line.group(withUnit(reading.strValue1, reading.strUnit1));
    line.group(withUnit(reading.strValue2, reading.strUnit2));
    line.group(tripTimes);
    line.group(settingsOf(reading));
    line.group(wiresOf(reading));
    line.group(limitsOf(reading));
    for (const auto& symbol : symbolsOf(reading, reading.bAlarmFlag != 0)) {
        if (symbol.lit) line.group(std::string(symbol.name));
    }
    return std::move(line).text();
}

}  // namespace kestrix::cli
