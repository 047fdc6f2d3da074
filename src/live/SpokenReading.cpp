#include "live/SpokenReading.h"

#include <QCoreApplication>
#include <QStringList>

#include <string_view>

#include "display/Steps.h"

namespace kestrix::live {
namespace {

QString spoken(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())).trimmed();
}

void say(QStringList& words, const QString& more) {
    if (!more.trimmed().isEmpty()) words << more.trimmed();
}

void sayReading(QStringList& words, const display::Reading& reading) {
    if (!reading.hidden) say(words, spoken(reading.value) + u' ' + spoken(reading.unit));
}

}  // namespace

QString inWords(const display::Display& display) {
    const auto translated = [](const char* text) { return QCoreApplication::translate("Display", text); };
    if (display.link == display::LinkState::NotConnected)
        return translated(QT_TRANSLATE_NOOP("Display", "Not Connected"));
    QStringList words;
    if (const display::TitleTexts* title = display::textsOf(display.title)) say(words, spoken(title->text));
    sayReading(words, display.first);
    sayReading(words, display.second);
    for (std::size_t i = 0; i < display.rcdRows.size(); ++i) {
        if (!display::showsTripTime(display, i)) continue;
        const display::RcdRowTexts& texts = display::kRcdRowTexts[i];
        words << QStringList{spoken(texts.multiplier), spoken(texts.angle), spoken(display.rcdRows[i].value),
                             spoken(display::kRcdUnit)}
                     .join(u' ');
    }
    if (display.warning) words << translated(QT_TRANSLATE_NOOP("Display", "Limit exceeded"));
    if (words.isEmpty()) return translated(QT_TRANSLATE_NOOP("Display", "No reading"));
    return words.join(QStringLiteral(", "));
}

bool SpokenReading::tell() {
    bool told = Control::tell();
    told |= tellChange(*this, told_, text(), &SpokenReading::textChanged);
    return told;
}

}  // namespace kestrix::live
