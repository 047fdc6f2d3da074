#include "ui/TextMeasure.h"

#include <QFont>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

#include "ui/LineBreaks.h"

namespace kestrix::ui {
namespace {

QFont fontOf(const QString& family, int size) {
    QFont font(family);
    font.setPixelSize(size);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

QTextOption wrapped(QTextOption::WrapMode mode) {
    QTextOption option;
    option.setWrapMode(mode);
    option.setUseDesignMetrics(true);  // as the scaled screen draws
    return option;
}

struct LaidOut {
    double height = 0;  // up to the line that reaches the most
    qsizetype end = 0;  // of that line in the text
};

LaidOut layOut(const QString& text, const QFont& font, double width, double most) {
    QTextLayout layout(QString(text).replace(u'\n', QChar::LineSeparator), font);
    layout.setTextOption(wrapped(QTextOption::WrapAtWordBoundaryOrAnywhere));
    LaidOut laidOut;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid() && laidOut.height < most;
         line = layout.createLine()) {
        line.setLeadingIncluded(true);
        line.setLineWidth(width);
        laidOut.height += line.height();
        laidOut.end = line.textStart() + line.textLength();
    }
    layout.endLayout();
    return laidOut;
}

// To lay out a text takes the time that all of it needs, and its beginning may reach the limit already.
constexpr qsizetype kBeginning = 4096;
constexpr qsizetype kWordAtCut = 512;  // the last lines could be others without the cut

}  // namespace

double FontTextMeasure::wrappedHeight(const QString& text, const QString& family, int size, double width,
                                      double maxHeight) const {
    if (text.isEmpty()) return 0;
    auto known = fonts_.find({family, size});
    if (known == fonts_.end()) {
        const QFont font = fontOf(family, size);
        const double line = layOut(QStringLiteral("x"), font, width, maxHeight).height;
        known = fonts_.try_emplace({family, size}, KnownFont{LineEstimate(font), line}).first;
    }
    const QString broken = withLineBreaks(text);
    if (const auto lines = known->second.estimate.lines(broken, width))
        return std::min(std::ceil(*lines * known->second.lineHeight), maxHeight);
    const QFont font = fontOf(family, size);
    if (broken.size() > kBeginning) {
        const LaidOut beginning = layOut(broken.left(kBeginning), font, width, maxHeight);
        if (beginning.height >= maxHeight && beginning.end < kBeginning - kWordAtCut) return maxHeight;
    }
    return std::min(std::ceil(layOut(broken, font, width, maxHeight).height), maxHeight);
}

double FontTextMeasure::widestWord(const QString& text, const QString& family, int size) {
    QTextLayout layout(withLineBreaks(text), fontOf(family, size));
    layout.setTextOption(wrapped(QTextOption::WordWrap));
    double widest = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(0);  // one word a line
        widest = std::max(widest, line.naturalTextWidth());
    }
    layout.endLayout();
    return widest;
}

}  // namespace kestrix::ui
