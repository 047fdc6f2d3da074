#include "history/ReportFont.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QRawFont>
#include <QStringList>
#include <QTextLayout>

#include <algorithm>
#include <array>

#include "history/ExportLines.h"
#include "history/ExportLog.h"

namespace kestrix::history {
namespace {

constexpr std::size_t kNamedAtMost = 10;
constexpr int kAnySize = 9;
constexpr char32_t kNoCharacter = 0x10FFFF;  // Unicode never gives this code away
constexpr char32_t kWhiteSquare = 0x25A1;

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

// The scripts that Qt shows only in fonts with rules for them. (N'Ko is one too, but of its fonts Qt has no
// list.)
struct RuledScript {
    QChar::Script script;
    QFontDatabase::WritingSystem writing;
};
constexpr std::array kRuledScripts{
    RuledScript{QChar::Script_Syriac, QFontDatabase::Syriac},
    RuledScript{QChar::Script_Thaana, QFontDatabase::Thaana},
    RuledScript{QChar::Script_Devanagari, QFontDatabase::Devanagari},
    RuledScript{QChar::Script_Bengali, QFontDatabase::Bengali},
    RuledScript{QChar::Script_Gurmukhi, QFontDatabase::Gurmukhi},
    RuledScript{QChar::Script_Gujarati, QFontDatabase::Gujarati},
    RuledScript{QChar::Script_Oriya, QFontDatabase::Oriya},
    RuledScript{QChar::Script_Tamil, QFontDatabase::Tamil},
    RuledScript{QChar::Script_Telugu, QFontDatabase::Telugu},
    RuledScript{QChar::Script_Kannada, QFontDatabase::Kannada},
    RuledScript{QChar::Script_Malayalam, QFontDatabase::Malayalam},
    RuledScript{QChar::Script_Sinhala, QFontDatabase::Sinhala},
    RuledScript{QChar::Script_Khmer, QFontDatabase::Khmer},
};

// Known without asking for a font: Qt would warn of each installed one that has no rules.
bool isOfScriptWithoutFont(char32_t character) {
    const auto found = std::find_if(
        kRuledScripts.begin(), kRuledScripts.end(),
        [script = QChar::script(character)](const RuledScript& ruled) { return ruled.script == script; });
    return found != kRuledScripts.end() && QFontDatabase::families(found->writing).isEmpty();
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

QString toString(const QList<uint>& characters) {
    QString text;
    for (const char32_t character : characters) text += QStringView(QChar::fromUcs4(character));
    return text;
}

// What Qt draws where no font knows a script: its boxes, which claim to have every character. They do not end
// with the script, but take the blanks and figures behind it too.
bool isOfBoxes(const QGlyphRun& run) {
    return run.rawFont().supportsCharacter(kNoCharacter);
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
    QList<uint> characters = drawn.toUcs4();
    for (uint& character : characters) {
        if (character <= '~') continue;
        if (!has(character)) character = replacement();
        leftwards = leftwards || isWrittenLeftwards(character);
    }
    drawn = toString(characters);
    // Figures behind a value that is written leftwards would be drawn before it. The mark has no picture and
    // does not come into the file.
    if (leftwards) drawn.replace(kBlanks, QChar(kLeftToRightMark) + kBlanks);
    return drawn;
}

bool ReportFont::has(char32_t character) {
    if (seen_.insert(character).second && !canShow(character)) missing_.insert(character);
    return missing_.count(character) == 0;
}

char32_t ReportFont::replacement() {
    if (replacement_ == 0) replacement_ = canShow(kWhiteSquare) ? kWhiteSquare : U'?';
    return replacement_;
}

// Laid out as it would be drawn: glyph 0 is a font's picture for what it lacks.
bool ReportFont::canShow(char32_t character) {
    if (isOfScriptWithoutFont(character)) return false;
    QTextLayout layout(QString::fromUcs4(&character, 1), ofSize(kAnySize).font, &device_);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const QList<QGlyphRun> runs = layout.glyphRuns();
    return std::none_of(runs.begin(), runs.end(), [character](const QGlyphRun& run) {
        return isOfBoxes(run) || (run.glyphIndexes().contains(0U) && hasPicture(character));
    });
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
