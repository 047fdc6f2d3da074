#include "ui/LineBreaks.h"

namespace kestrix::ui {
namespace {

// The hyphen of "L-PE": before it stands one letter, which is a word.
bool isAfterOneLetter(const QString& text, qsizetype hyphen) {
    return hyphen > 0 && text[hyphen - 1].isLetter() && (hyphen == 1 || !text[hyphen - 2].isLetterOrNumber());
}

}  // namespace

QString withLineBreaks(const QString& text) {
    constexpr QChar kZeroWidthSpace(0x200B);
    constexpr QChar kWordJoiner(0x2060);
    QString broken;
    broken.reserve(text.size() + text.size() / 4);
    for (qsizetype i = 0; i < text.size(); ++i) {
        broken += text[i];
        const bool mayBreak = (text[i] == u',' || text[i] == u';') && i + 1 < text.size();
        if (mayBreak && !text[i + 1].isSpace()) broken += kZeroWidthSpace;
        const bool joins = (text[i] == u'-' && isAfterOneLetter(text, i)) ||
                           (text[i] == u':' && i > 0 && text[i - 1].isLetter());
        if (joins && i + 1 < text.size() && !text[i + 1].isSpace()) broken += kWordJoiner;
    }
    return broken;
}

}  // namespace kestrix::ui
