#include "live/MeterDisplay.h"

#include <span>

#include "live/MeasurementTexts.h"

namespace kestrix::live {
namespace {

using protocol::MeterReading;

constexpr QRgb kTransparent = 0;
const QColor kLitTitle(39, 121, 205);

struct Style {
    QColor background;
    int fontSize;
};

const std::array<Style, 4> kStyles{{
    {QColor::fromRgba(kTransparent), 14},  // RCD rows
    {QColor::fromRgba(kTransparent), 12},  // function titles
    {QColor(69, 94, 149), 8},              // column headers
    {QColor::fromRgba(kTransparent), 20},  // main readings
}};

const std::array<QString, 6> kTitleTexts{
    QStringLiteral("INSULATION"), QStringLiteral("RE"),       QStringLiteral("LOW OHM"),
    QStringLiteral("V"),          QStringLiteral("LOOP/PFC"), QStringLiteral("RCD"),
};

// The title that a function code lights, counted from 0. The titles stand in the order of the tester's dial.
struct TitleOfCode {
    std::int32_t code;
    std::size_t title;
};
constexpr TitleOfCode kTitleOfCode[] = {{'1', 1}, {'2', 0}, {'3', 2}, {'4', 3}, {'5', 4}, {'6', 5}, {'7', 5}};

constexpr std::int32_t kLastRcdStep = 13;

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

}  // namespace

std::int32_t MeterDisplay::showMode = 0;
std::int32_t MeterDisplay::lastSubFuncF2 = 0;
std::int32_t MeterDisplay::rcdStep = 0;

MeterDisplay::MeterDisplay()
    : Screen(ui::ScreenId::MainView),
      rcdRows{{{*this, 1}, {*this, 2}, {*this, 3}, {*this, 4}, {*this, 5}, {*this, 6}}} {}

void MeterDisplay::buildReadings() {
    for (ui::Label* label : {&D1Value, &D1Unit, &D2Value, &D2Unit}) setUILabelView(*label, kReadingStyle, {});
    for (std::size_t i = 0; i < rcdRows.size(); ++i) {
        setUILabelView(rcdRows[i].Row, kRcdRowStyle, QString::fromUtf8(kRcdRowTexts[i].multiplier));
        setUILabelView(rcdRows[i].Angle, kRcdRowStyle, QString::fromUtf8(kRcdRowTexts[i].angle));
        setUILabelView(rcdRows[i].Value, kRcdRowStyle, {});
        setUILabelView(rcdRows[i].Unit, kRcdRowStyle, QStringLiteral("ms"));
    }
}

void MeterDisplay::buildTitles() {
    const auto labels = titles();
    for (std::size_t i = 0; i < labels.size(); ++i) setUILabelView(*labels[i], kTitleStyle, kTitleTexts[i]);
}

void MeterDisplay::didReceive3820Data(const MeterReading& record, bool) {
    setTitleColor(record.iFunction);
    blueImage.setHidden(record.bAlarmFlag == 0);
    strfunction = record.strfunction;
    intfunctions = record.iFunction;
    switch (record.iFunction) {
        case '7':
            showRcdSequence(record);
            break;
        case '6':
            showOneReading(record);
            break;
        default:
            showTwoReadings(record);
    }
    ClearData();
    if (!parametersText(intfunctions, record, parameters)) return;
    RcdValues rcd;
    if (intfunctions == '7') {
        for (std::size_t i = 0; i < rcd.size(); ++i) rcd[i] = rcdRows[i].Value.text().toStdString();
    }
    results = resultsText(intfunctions, record, rcd);
}

void MeterDisplay::showRcdSequence(const MeterReading& record) {
    if (!D1Value.hidden()) {
        ClearRCDValue();
        setHiddenLable(kReadings, true);
    }
    if (record.iSubFuncF2 != lastSubFuncF2) ClearRCDValue();
    const bool sixRows = record.iSubFuncF2 < 2;
    showMode = sixRows ? 3 : 2;
    lastSubFuncF2 = record.iSubFuncF2;
    setHiddenLable(kRcdRows1To4, false);
    setHiddenLable(kRcdRows5And6, !sixRows);
    advanceRcdSequence(record);
}

void MeterDisplay::showOneReading(const MeterReading& record) {
    setHiddenLable(kRcdValues, true);
    showMode = 1;
    D1Value.setText(text(record.strValue1));
    D1Unit.setText(text(record.strUnit1));
    setHiddenLable(kFirstReadingOnly, false);
    setHiddenLable(kRcdRows1To4, true);
    setHiddenLable(kRcdRows5And6, true);
}

void MeterDisplay::showTwoReadings(const MeterReading& record) {
    showMode = 0;
    D1Value.setText(text(record.strValue1));
    D1Unit.setText(text(record.strUnit1));
    D2Value.setText(text(record.strValue2));
    D2Unit.setText(text(record.strUnit2));
    if (D2Value.hidden()) {
        setHiddenLable(kReadings, false);
        setHiddenLable(kRcdRows1To4, true);
        setHiddenLable(kRcdRows5And6, true);
    }
    ClearRCDValue();
}

// A running sequence gives one trip time on every second record, from the third on.
void MeterDisplay::advanceRcdSequence(const MeterReading& record) {
    rcdStep = record.bTest != 0 ? rcdStep + 1 : 0;
    if (rcdStep > kLastRcdStep) rcdStep = 0;
    if (rcdStep == 1) return ClearRCDValue();
    if (rcdStep < 3 || rcdStep % 2 == 0) return;
    ui::Label& value = rcdRows[static_cast<std::size_t>((rcdStep - 3) / 2)].Value;
    value.setText(text(record.strValue1));
    setHiddenLable(kRcdValues, true);
    value.setHidden(false);
    if (rcdStep == kLastRcdStep) rcdStep = 0;
}

void MeterDisplay::setUILabelView(ui::Label& label, std::int32_t style, const QString& text) {
    if (style >= 0 && static_cast<std::size_t>(style) < kStyles.size()) {
        const Style& row = kStyles[static_cast<std::size_t>(style)];
        label.setBackgroundColor(row.background);
        label.setFont(QStringLiteral("Arial"), row.fontSize);
    }
    label.setText(text.isNull() ? QStringLiteral("") : text);
    label.setAlignment(Qt::AlignHCenter);
    label.setTextColor(Qt::white);
}

void MeterDisplay::setHiddenLable(std::int32_t group, bool hidden) {
    const auto hideRows = [this, hidden](std::size_t first, std::size_t last) {
        for (std::size_t i = first; i <= last; ++i) {
            rcdRows[i].Row.setHidden(hidden);
            rcdRows[i].Angle.setHidden(hidden);
            rcdRows[i].Unit.setHidden(hidden);
        }
    };
    switch (group) {
        case kReadings:
        case kFirstReadingOnly:
            D1Value.setHidden(hidden);
            D1Unit.setHidden(hidden);
            D2Value.setHidden(hidden || group == kFirstReadingOnly);
            D2Unit.setHidden(hidden || group == kFirstReadingOnly);
            break;
        case kRcdRows1To4:
            hideRows(0, 3);
            break;
        case kRcdRows5And6:
            hideRows(4, 5);
            break;
        case kRcdValues:
            for (RcdRow& row : rcdRows) row.Value.setHidden(hidden);
            break;
        default:
            break;
    }
}

void MeterDisplay::setTitleColor(std::int32_t code) {
    const auto labels = titles();
    const ui::Label* lit = nullptr;
    for (const TitleOfCode& row : kTitleOfCode) {
        if (row.code == code) lit = labels[row.title];
    }
    for (ui::Label* title : labels)
        title->setBackgroundColor(title == lit ? kLitTitle : QColor(Qt::transparent));
}

std::string MeterDisplay::getRCDResult(const std::string& value, const std::string& multiplier,
                                       const std::string& angle) const {
    return rcdResultText(value, multiplier, angle);
}

void MeterDisplay::ClearRCDValue() {
    for (RcdRow& row : rcdRows) row.Value.setText(QStringLiteral(" "));
}

void MeterDisplay::ClearData() {
    results.clear();
}

const ui::Label* MeterDisplay::litTitle() const {
    for (const ui::Label* title : {&fun1, &fun2, &fun3, &fun4, &fun5, &fun6}) {
        if (title->backgroundColor() == kLitTitle) return title;
    }
    return nullptr;
}

std::array<ui::Label*, 6> MeterDisplay::titles() {
    return {&fun1, &fun2, &fun3, &fun4, &fun5, &fun6};
}

}  // namespace kestrix::live
