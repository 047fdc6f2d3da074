#include "apps/kestrix-cli/TerminalDisplay.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <utility>

#include "apps/kestrix-cli/LargeDigits.h"
#include "apps/kestrix-cli/ReadingTexts.h"
#include "apps/kestrix-cli/TerminalText.h"
#include "display/Steps.h"

namespace kestrix::cli {
namespace {

using protocol::MeterReading;

constexpr int kNarrowest = 40;  // what the display is drawn for at least
constexpr int kWidest = 80;     // and at most: wider only pulls its parts away from each other

std::string blanks(int count) {
    return std::string(static_cast<std::size_t>(std::max(count, 0)), ' ');
}

void append(Row& row, Row more) {
    for (auto& span : more) row.push_back(std::move(span));
}

Row filled(Row row, int columns) {
    row = clipped(row, columns);
    row.push_back({blanks(columns - columnsOf(row))});
    return row;
}

Row centred(const Row& row, int columns) {
    Row out{{blanks((columns - columnsOf(row)) / 2)}};
    append(out, row);
    return filled(std::move(out), columns);
}

Row leftAndRight(Row left, const Row& right, int columns) {
    left = filled(std::move(left), columns - columnsOf(right));
    append(left, right);
    return left;
}

// Equal cells side by side.
Row inCells(const std::vector<Row>& cells, int count, int columns) {
    Row row;
    for (const auto& cell : cells) append(row, filled(cell, columns / count));
    return filled(std::move(row), columns);
}

// A value is never cut off for its name's sake.
Row named(const NamedText& text, std::string_view between, int columns) {
    const int forName = std::max(columns - columnsOf(text.value) - columnsOf(between), 1);
    return {{clipped(text.name, forName).append(between), Ink::Dim}, {text.value}};
}

// Up to `count` of the texts side by side, from the first on.
Row namedCells(const std::vector<NamedText>& texts, std::size_t first, int count, std::string_view between,
               int columns) {
    std::vector<Row> cells;
    const auto end = std::min(first + static_cast<std::size_t>(count), texts.size());
    for (std::size_t i = first; i < end; ++i) cells.push_back(named(texts[i], between, columns / count - 1));
    return inCells(cells, count, columns);
}

// Draws inside a frame `columns` wide; every row has one blank to the left and to the right of its content.
class Drawing {
  public:
    Drawing(const DisplayState& state, int columns, bool colour)
        : state_(state), columns_(columns), colour_(colour) {
        if (display::showsReading(state.display) && state.reading) reading_ = &*state.reading;
    }

    std::vector<Row> rows() && {
        border("┌", "┐", {printable(state_.source)});
        titles();
        separator();
        symbols();
        mainReading();
        secondReading();
        separator();
        settings();
        separator();
        voltages();
        separator();
        link();
        border("└", "┘", {printable(state_.problem), Ink::Bad});
        return std::move(rows_);
    }

  private:
    int inner() const { return columns_ - 4; }

    // A line of the frame, with a text set into it.
    void border(const char* left, const char* right, const Span& text) {
        Row row{{left, Ink::Dim}};
        int dashes = columns_ - 2;
        if (!text.text.empty()) {
            const Span shown{clipped(text.text, columns_ - 6), text.ink};
            append(row, {{"─ ", Ink::Dim}, shown, {" "}});
            dashes -= columnsOf(shown.text) + 3;
        }
        std::string line;
        for (; dashes > 0; --dashes) line += "─";
        append(row, {{line, Ink::Dim}, {right, Ink::Dim}});
        rows_.push_back(std::move(row));
    }

    void separator() { border("├", "┤", {}); }

    void line(Row content) { framed(filled(std::move(content), inner()), " "); }

    void framed(Row content, const char* margin) {
        Row row{{"│", Ink::Dim}, {margin}};
        append(row, std::move(content));
        append(row, {{margin}, {"│", Ink::Dim}});
        rows_.push_back(std::move(row));
    }

    // The dial's names at even distances, over the frame's whole width; a lit one takes a blank on either
    // side.
    void titles() {
        constexpr auto count = display::kTitles.size() + 1;
        int blank = columns_ - 2;
        for (const auto& title : display::kTitles) blank -= columnsOf(title.text);
        std::array<int, count> gaps{};
        for (std::size_t i = 0; i < count; ++i) {
            gaps[i] = (blank + static_cast<int>(i)) / static_cast<int>(count);
        }
        Row names;
        for (std::size_t i = 0; i < display::kTitles.size(); ++i) {
            const std::string name(display::kTitles[i].text);
            names.push_back({name});
            if (display::kTitles[i].title != state_.display.title) continue;
            names[i] = {colour_ ? " " + name + " " : "[" + name + "]", Ink::Lit};
            --gaps[i];
            --gaps[i + 1];
        }
        Row row{{blanks(gaps[0])}};
        for (std::size_t i = 0; i < names.size(); ++i) append(row, {names[i], {blanks(gaps[i + 1])}});
        framed(std::move(row), "");
    }

    // Every symbol has a place of its own, as on the tester; it is empty while the symbol is dark.
    void symbols() {
        const auto all = symbolsOf(reading_ != nullptr ? *reading_ : MeterReading{}, state_.display.warning);
        std::vector<Row> cells(all.size());
        std::transform(all.begin(), all.end(), cells.begin(), [](const Symbol& symbol) -> Row {
            return {{std::string(symbol.lit ? symbol.name : ""), symbol.urgent ? Ink::Warning : Ink::Bold}};
        });
        line(inCells(cells, static_cast<int>(cells.size()), inner()));
    }

    bool connected() const { return state_.display.link == display::LinkState::Connected; }

    // What stands in large digits: the first reading, or in an RCD auto test the trip time that is shown.
    display::Reading main() const {
        const display::Display& shown = state_.display;
        if (!shown.first.hidden) return shown.first;
        for (std::size_t i = 0; i < shown.rcdRows.size(); ++i) {
            if (display::showsTripTime(shown, i))
                return {shown.rcdRows[i].value, std::string(display::kRcdUnit)};
        }
        return {};
    }

    void mainReading() {
        line({});
        if (reading_ == nullptr) {
            line({});
            line(centred({{connected() ? "Waiting for a reading" : "Not Connected", Ink::Bold}}, inner()));
            line({});
        } else {
            const display::Reading shown = main();
            const auto unit = withUnit({}, shown.unit);
            const auto digits = largeDigits(printable(shown.value));
            const int columns = columnsOf(digits[0]) + 2 + columnsOf(unit);
            if (columns <= inner()) {
                for (std::size_t i = 0; i < digits.size(); ++i) {
                    const bool last = i + 1 == digits.size();
                    line(centred({{digits[i] + "  " + (last ? unit : blanks(columnsOf(unit))), Ink::Bold}},
                                 inner()));
                }
            } else {
                line({});
                line(centred({{withUnit(shown.value, shown.unit), Ink::Bold}}, inner()));
                line({});
            }
        }
        line({});
    }

    void secondReading() {
        const display::Reading& second = state_.display.second;
        if (reading_ != nullptr && second.hidden && !state_.display.rcdRows[0].hidden) return tripTimes();
        line({});
        line(reading_ == nullptr || second.hidden
                 ? Row{}
                 : centred({{withUnit(second.value, second.unit)}}, inner()));
        line({});
    }

    // Three lines of two rows: 0° at the left, 180° at the right.
    void tripTimes() {
        for (std::size_t i = 0; i < display::kRcdRows; i += 2)
            line(inCells({tripTime(i), tripTime(i + 1)}, 2, inner()));
    }

    // Empty for a row that is hidden; a dot where the row shows no time.
    Row tripTime(std::size_t i) const {
        constexpr int nameColumns = 10;
        constexpr int valueColumns = 7;
        const display::RcdRow& row = state_.display.rcdRows[i];
        if (row.hidden) return {};
        const std::string value =
            display::showsTripTime(state_.display, i) ? withUnit(row.value, display::kRcdUnit) : "·";
        Row cell = filled({{rcdRowName(i), Ink::Dim}}, nameColumns);
        append(cell, {{blanks(valueColumns - columnsOf(value))}, {value, Ink::Bold}});
        return centred(cell, inner() / 2);
    }

    void settings() {
        const auto all = reading_ != nullptr ? settingsOf(*reading_) : std::vector<NamedText>();
        line(namedCells(all, 0, 2, ": ", inner()));
        line(namedCells(all, 2, 2, ": ", inner()));
    }

    void voltages() {
        const auto wires = reading_ != nullptr ? wiresOf(*reading_) : std::vector<NamedText>();
        const auto limits = reading_ != nullptr ? limitsOf(*reading_) : std::vector<NamedText>();
        line(namedCells(wires, 0, 3, " ", inner()));
        line(namedCells(limits, 0, 3, " ", inner()));
    }

    void link() {
        const Span on{"● Connected", Ink::Good};
        const Span off{"○ Not Connected", Ink::Bad};
        line(leftAndRight({connected() ? on : off}, {{lastFrame()}}, inner()));
        const double rate = std::isfinite(state_.framesPerSecond) ? state_.framesPerSecond : 0;
        line(leftAndRight({{fmt::format("{:.1f} frames/s", rate)}},
                          {{fmt::format("{} frames", state_.frames)}}, inner()));
    }

    std::string lastFrame() const {
        const auto& seconds = state_.secondsSinceLastFrame;
        if (!seconds || !std::isfinite(*seconds)) return "no frame yet";
        return fmt::format("last frame {:.{}f} s ago", *seconds, *seconds < 100 ? 1 : 0);
    }

    const DisplayState& state_;
    const MeterReading* reading_ = nullptr;
    const int columns_;
    const bool colour_;
    std::vector<Row> rows_;
};

}  // namespace

std::vector<std::string> renderDisplay(const DisplayState& state, const TerminalStyle& style) {
    std::vector<std::string> lines;
    for (const auto& row :
         Drawing(state, std::clamp(style.columns, kNarrowest, kWidest), style.colour).rows()) {
        lines.push_back(rendered(clipped(row, std::max(style.columns, 0)), style.colour));
    }
    return lines;
}

std::vector<std::string> fitHeight(std::vector<std::string> lines, int rows) {
    // Rows of the display, least important first: gaps, settings and wires, the second reading and the auto
    // slots, rules, counts, flags. The main reading and the link state go last.
    static constexpr std::array kLeastImportantFirst{4,  8, 17, 16, 15, 14, 13, 12, 11, 9, 10,
                                                     20, 2, 18, 0,  21, 3,  1,  5,  7,  6, 19};
    const std::size_t room = static_cast<std::size_t>(std::max(rows, 0));
    std::vector<std::size_t> leaving;
    for (std::size_t i = 0; i < kLeastImportantFirst.size() && lines.size() > room + leaving.size(); ++i)
        leaving.push_back(static_cast<std::size_t>(kLeastImportantFirst[i]));
    std::sort(leaving.rbegin(), leaving.rend());
    for (const std::size_t row : leaving) {
        if (row < lines.size()) lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(row));
    }
    return lines;
}

}  // namespace kestrix::cli
