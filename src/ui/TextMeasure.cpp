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

}  // namespace

double FontTextMeasure::wrappedHeight(const QString& text, const QString& family, int size, double width,
                                      double maxHeight) const {
    if (text.isEmpty()) return 0;
    QString lines = withLineBreaks(text);
    lines.replace(u'\n', QChar::LineSeparator);
    QTextLayout layout(lines, fontOf(family, size));
    layout.setTextOption(wrapped(QTextOption::WrapAtWordBoundaryOrAnywhere));
    double height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid() && height < maxHeight;
         line = layout.createLine()) {
        line.setLeadingIncluded(true);
        line.setLineWidth(width);
        height += line.height();
    }
    layout.endLayout();
    return std::min(std::ceil(height), maxHeight);
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
