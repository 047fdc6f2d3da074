#include "apps/kestrix-cli/ScreenJson.h"

#include <string_view>

#include "apps/kestrix-cli/JsonText.h"

namespace kestrix::cli {
namespace {

using live::MeterDisplay;
using live::RcdRow;

struct ReadingLabel {
    std::string_view name;
    ui::Label MeterDisplay::*label;
};
constexpr ReadingLabel kReadingLabels[] = {
    {"D1Value", &MeterDisplay::D1Value},
    {"D1Unit", &MeterDisplay::D1Unit},
    {"D2Value", &MeterDisplay::D2Value},
    {"D2Unit", &MeterDisplay::D2Unit},
};

struct RowLabel {
    std::string_view name;  // behind RCD and the row's number
    ui::Label RcdRow::*label;
};
constexpr RowLabel kRowLabels[] = {
    {"Row", &RcdRow::Row},
    {"Angle", &RcdRow::Angle},
    {"Value", &RcdRow::Value},
    {"Unit", &RcdRow::Unit},
};

void appendText(std::string& out, const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    appendJsonText(out, {utf8.constData(), static_cast<std::size_t>(utf8.size())});
}

void appendHidden(std::string& out, bool hidden) {
    out += hidden ? "\"hidden\":true}" : "\"hidden\":false}";
}

// Behind the label's name.
void appendLabel(std::string& out, const ui::Label& label) {
    out += "\":{\"text\":";
    appendText(out, label.text());
    out += ',';
    appendHidden(out, label.hidden());
    out += ',';
}

void appendLabels(std::string& out, const MeterDisplay& display) {
    for (const ReadingLabel& reading : kReadingLabels) {
        out.append("\"").append(reading.name);
        appendLabel(out, display.*reading.label);
    }
    char number = '1';
    for (const RcdRow& row : display.rcdRows) {
        for (const RowLabel& part : kRowLabels) {
            (out.append("\"RCD") += number).append(part.name);
            appendLabel(out, row.*part.label);
        }
        ++number;
    }
    out.pop_back();  // the last comma
}

void appendNumber(std::string& out, std::string_view key, std::int32_t number) {
    out.append(key).append(std::to_string(number));
}

}  // namespace

ConnectedDisplay::ConnectedDisplay() {
    blueImage.setHidden(true);
    buildReadings();
    buildTitles();
    ClearRCDValue();
}

void appendScreenJson(std::string& out, const MeterDisplay& display) {
    out += "{\"strfunction\":";
    if (display.strfunction) {
        appendJsonText(out, *display.strfunction);
    } else {
        out += "null";
    }
    appendNumber(out, ",\"intfunctions\":", display.intfunctions);
    out += ",\"parameters\":";
    appendJsonText(out, display.parameters);
    out += ",\"results\":";
    appendJsonText(out, display.results);
    appendNumber(out, ",\"showMode\":", MeterDisplay::showMode);
    appendNumber(out, ",\"lastSubFuncF2\":", MeterDisplay::lastSubFuncF2);
    appendNumber(out, ",\"rcdStep\":", MeterDisplay::rcdStep);
    out += ",\"title\":";
    if (const ui::Label* lit = display.litTitle()) {
        appendText(out, lit->objectName());
    } else {
        out += "null";
    }
    out += ",\"blueImage\":{";
    appendHidden(out, display.blueImage.hidden());
    out += ",\"labels\":{";
    appendLabels(out, display);
    out += "}}";
}

}  // namespace kestrix::cli
