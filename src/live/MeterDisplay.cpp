#include "live/MeterDisplay.h"

#include <QAnyStringView>

#include "display/MeasurementTexts.h"
#include "ui/Palette.h"

namespace kestrix::live {
namespace {

using ui::Palette;

struct Style {
    QColor background;
    int fontSize;
};

const std::array<Style, 4> kStyles{{
    {Palette::clear, 14},  // RCD rows
    {Palette::clear, 12},  // function titles
    {Palette::header, 8},  // column headers
    {Palette::clear, 20},  // main readings
}};

// In the order of the tester's dial.
constexpr std::array<ui::Label MeterDisplay::*, display::kTitles.size()> kTitleLabels{
    &MeterDisplay::fun1, &MeterDisplay::fun2, &MeterDisplay::fun3,
    &MeterDisplay::fun4, &MeterDisplay::fun5, &MeterDisplay::fun6};

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

// Most texts are those of the record before: they are compared as they stand, and nothing is allocated.
void showText(ui::Label& label, const std::string& utf8) {
    const QAnyStringView next(utf8.data(), static_cast<qsizetype>(utf8.size()));
    if (QAnyStringView(label.text()) != next) label.setText(text(utf8));
}

void showReading(ui::Label& value, ui::Label& unit, const display::Reading& reading) {
    showText(value, reading.value);
    showText(unit, reading.unit);
    value.setHidden(reading.hidden);
    unit.setHidden(reading.hidden);
}

void showRow(RcdRow& labels, const display::RcdRow& row) {
    showText(labels.Value, row.value);
    labels.Value.setHidden(row.valueHidden);
    for (ui::Label* label : {&labels.Row, &labels.Angle, &labels.Unit}) label->setHidden(row.hidden);
}

}  // namespace

display::Counters MeterDisplay::counters;

MeterDisplay::MeterDisplay()
    : Screen(ui::ScreenId::MainView),
      rcdRows{{{*this, 1}, {*this, 2}, {*this, 3}, {*this, 4}, {*this, 5}, {*this, 6}}} {
    display_.counters = counters;
}

void MeterDisplay::buildReadings() {
    for (ui::Label* label : {&D1Value, &D1Unit, &D2Value, &D2Unit}) setUILabelView(*label, kReadingStyle, {});
    for (std::size_t i = 0; i < rcdRows.size(); ++i) {
        setUILabelView(rcdRows[i].Row, kRcdRowStyle, text(display::kRcdRowTexts[i].multiplier));
        setUILabelView(rcdRows[i].Angle, kRcdRowStyle, text(display::kRcdRowTexts[i].angle));
        setUILabelView(rcdRows[i].Value, kRcdRowStyle, {});
        setUILabelView(rcdRows[i].Unit, kRcdRowStyle, text(display::kRcdUnit));
    }
}

void MeterDisplay::buildTitles() {
    for (std::size_t i = 0; i < kTitleLabels.size(); ++i)
        setUILabelView(this->*kTitleLabels[i], kTitleStyle, text(display::kTitles[i].text));
}

void MeterDisplay::didReceive3820Data(const protocol::MeterReading& record, bool) {
    display_.counters = counters;
    display::recordCame(display_, record);
    counters = display_.counters;
    show();
}

bool MeterDisplay::showLinkState(std::int32_t state) {
    if (!display::linkStateChanged(display_, state)) return false;
    show();
    return true;
}

void MeterDisplay::show() {
    showReading(D1Value, D1Unit, display_.first);
    showReading(D2Value, D2Unit, display_.second);
    for (std::size_t i = 0; i < rcdRows.size(); ++i) showRow(rcdRows[i], display_.rcdRows[i]);
    for (std::size_t i = 0; i < kTitleLabels.size(); ++i) {
        const bool lit = display::kTitles[i].title == display_.title;
        (this->*kTitleLabels[i]).setBackgroundColor(lit ? Palette::lit : Palette::clear);
    }
    blueImage.setHidden(!display_.warning);
}

void MeterDisplay::setUILabelView(ui::Label& label, std::int32_t style, const QString& text) {
    if (style >= 0 && static_cast<std::size_t>(style) < kStyles.size()) {
        const Style& row = kStyles[static_cast<std::size_t>(style)];
        label.setBackgroundColor(row.background);
        label.setFont(QStringLiteral("Arial"), row.fontSize);
    }
    label.setText(text.isNull() ? QStringLiteral("") : text);
    label.setAlignment(Qt::AlignHCenter);
    label.setTextColor(Palette::textOnDark);
}

void MeterDisplay::setHiddenLable(std::int32_t group, bool hidden) {
    display::setHidden(display_, group, hidden);
    show();
}

void MeterDisplay::setTitleColor(std::int32_t code) {
    display_.title = display::titleOf(code);
    show();
}

std::string MeterDisplay::getRCDResult(const std::string& value, const std::string& multiplier,
                                       const std::string& angle) const {
    std::string text;
    display::appendRcdResult(text, value, multiplier, angle);
    return text;
}

void MeterDisplay::ClearRCDValue() {
    display::clearRcdValues(display_);
    show();
}

void MeterDisplay::ClearData() {
    display_.results.clear();
}

const ui::Label* MeterDisplay::litTitle() const {
    for (std::size_t i = 0; i < kTitleLabels.size(); ++i) {
        if (display::kTitles[i].title == display_.title) return &(this->*kTitleLabels[i]);
    }
    return nullptr;
}

}  // namespace kestrix::live
