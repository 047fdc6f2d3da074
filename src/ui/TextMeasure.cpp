#include "ui/TextMeasure.h"

#include <QFont>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

#include "ui/LineBreaks.h"

namespace kestrix::ui {

double FontTextMeasure::wrappedHeight(const QString& text, const QString& family, int size, double width,
                                      double maxHeight) const {
    if (text.isEmpty()) return 0;
    QFont font(family);
    font.setPixelSize(size);
    font.setHintingPreference(QFont::PreferNoHinting);
    QString lines = withLineBreaks(text);
    lines.replace(u'\n', QChar::LineSeparator);
    QTextLayout layout(lines, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setUseDesignMetrics(true);  // as the scaled screen draws
    layout.setTextOption(option);
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

}  // namespace kestrix::ui
