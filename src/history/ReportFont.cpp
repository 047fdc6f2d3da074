#include "history/ReportFont.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QStringList>
#include <QTextLayout>

#include <algorithm>

#include "history/ExportLines.h"
#include "history/ExportLog.h"

namespace kestrix::history {
namespace {

constexpr std::size_t kNamedAtMost = 10;
constexpr int kAnySize = 9;

constexpr QLatin1String kBlanks(kSeparator.data(), kSeparator.size());
constexpr char16_t kLeftToRightMark = 0x200E;

bool isBlankWhenDrawn(QChar character) {
    const QChar::Category category = character.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph;
}

// Embeddings, overrides and isolates: what turns the characters behind it round.
bool turnsCharactersRound(QChar character) {
    return (character >= QChar(0x202A) && character <= QChar(0x202E)) ||
           (character >= QChar(0x2066) && character <= QChar(0x2069));
}

// Joiners, directions and selectors of a variant have none of their own.
bool hasPicture(char32_t character) {
    switch (QChar::category(character)) {
        case QChar::Other_Format:
        case QChar::Other_Surrogate:
        case QChar::Separator_Space:
            return false;
        default:
            return !(character >= 0xFE00 && character <= 0xFE0F) &&
                   !(character >= 0xE0100 && character <= 0xE01EF);
    }
}

bool isWrittenLeftwards(char32_t character) {
    const QChar::Direction direction = QChar::direction(character);
    return direction == QChar::DirR || direction == QChar::DirAL;
}

QString named(char32_t character) {
    return QStringLiteral("U+%1 (%2)")
        .arg(static_cast<uint>(character), 4, 16, QLatin1Char('0'))
        .toUpper()
        .arg(QString::fromUcs4(&character, 1));
}

}  // namespace

const ReportFont::Size& ReportFont::ofSize(int points) {
    Size& size = sizes_[points];
    if (size.ascent == 0) {
        // Behind the first family those that are asked when it lacks a character; then all that are
        // installed. The second one is named because the system's own order may put fonts with a few Chinese
        // characters first.
        size.font.setFamilies({QStringLiteral("Liberation Sans"), QStringLiteral("Droid Sans Fallback")});
        size.font.setPixelSize(points * dots_);
        size.font.setHintingPreference(QFont::PreferNoHinting);
        size.ascent = QFontMetricsF(size.font, &device_).ascent();
    }
    return size;
}

QString ReportFont::drawable(std::string_view text) {
    QString drawn = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    const auto plain = [](QChar c) { return c >= QChar(' ') && c <= QChar('~'); };
    if (std::all_of(drawn.cbegin(), drawn.cend(), plain)) return drawn;
    std::replace_if(drawn.begin(), drawn.end(), isBlankWhenDrawn, QChar(' '));
    drawn.removeIf(turnsCharactersRound);
    bool leftwards = false;
    for (const uint character : drawn.toUcs4()) {
        if (character <= '~') continue;
        note(character);
        leftwards = leftwards || isWrittenLeftwards(character);
    }
    // Figures behind a value that is written leftwards would be drawn before it. The mark has no picture and
    // does not come into the file.
    if (leftwards) drawn.replace(kBlanks, QChar(kLeftToRightMark) + kBlanks);
    return drawn;
}

void ReportFont::note(char32_t character) {
    if (!seen_.insert(character).second || !hasPicture(character)) return;
    if (!canShow(character)) missing_.insert(character);
}

// Laid out as it would be drawn: glyph 0 is a font's picture for what it lacks.
bool ReportFont::canShow(char32_t character) {
    QTextLayout layout(QString::fromUcs4(&character, 1), ofSize(kAnySize).font, &device_);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const QList<QGlyphRun> runs = layout.glyphRuns();
    return std::none_of(runs.begin(), runs.end(),
                        [](const QGlyphRun& run) { return run.glyphIndexes().contains(0U); });
}

void ReportFont::reportMissing() const {
    if (missing_.empty()) return;
    QStringList names;
    for (const char32_t character : missing_) {
        if (static_cast<std::size_t>(names.size()) == kNamedAtMost) break;
        names << named(character);
    }
    QString line = QStringLiteral("no installed font has ") + names.join(QStringLiteral(", "));
    if (missing_.size() > kNamedAtMost)
        line += QStringLiteral(" and %1 more").arg(missing_.size() - kNamedAtMost);
    qCWarning(lcReport).noquote() << line;
}

}  // namespace kestrix::history
