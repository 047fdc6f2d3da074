#include "ui/LineBreaks.h"

namespace kestrix::ui {

QString withLineBreaks(const QString& text) {
    constexpr QChar kZeroWidthSpace(0x200B);
    QString broken;
    broken.reserve(text.size() + text.size() / 4);
    for (qsizetype i = 0; i < text.size(); ++i) {
        broken += text[i];
        const bool mayBreak = (text[i] == u',' || text[i] == u';') && i + 1 < text.size();
        if (mayBreak && !text[i + 1].isSpace()) broken += kZeroWidthSpace;
    }
    return broken;
}

}  // namespace kestrix::ui
