#include "ui/LineEstimate.h"

#include <QTextBoundaryFinder>
#include <QTextLayout>

#include <algorithm>

namespace kestrix::ui {
namespace {

constexpr QChar kZeroWidthSpace(0x200B);

bool isMark(QChar character) {
    constexpr QChar kWordJoiner(0x2060);
    return character == kZeroWidthSpace || character == kWordJoiner;
}
constexpr qsizetype kLongest = 512;  // a longer one is laid out
// What rounding may make of the width of a line, in points.
constexpr double kUncertain = 0.6;

// Fills lines with words as a layout does: the blanks at the end of a line need no room.
class Lines {
  public:
    explicit Lines(double width) : width_(width) {}

    // Whether it is certain in which line the word stands. overhang: at its end, in points.
    bool add(double word, double overhang, double blanks) {
        if (word + overhang > width_ - kUncertain) return false;  // it may be broken
        const double with = used_ + word + overhang;
        if (with > width_ - kUncertain && with < width_ + kUncertain) return false;
        if (with > width_) {
            ++count_;
            used_ = 0;
        }
        used_ += word + blanks;
        return true;
    }
    int count() const { return count_; }

  private:
    double width_;
    double used_ = 0;
    int count_ = 1;
};

}  // namespace

float LineEstimate::widthOf(QChar character) {
    if (isMark(character)) return 0;
    if (character.unicode() >= kPlainEnd) return -1;
    float& width = widths_[character.unicode()];
    if (width == 0) {
        const bool plain =
            (character.isPrint() || character == u' ') && !character.isMark() && metrics_.inFont(character);
        const double advance = plain ? metrics_.horizontalAdvance(character) : 0;
        width = advance > 0 ? static_cast<float>(advance) : -1.0F;
    }
    return width;
}

float LineEstimate::kerningOf(QChar left, QChar right) {
    if (isMark(left) || isMark(right)) return 0;
    const std::uint32_t pair = static_cast<std::uint32_t>(left.unicode()) << 16U | right.unicode();
    const auto known = kernings_.constFind(pair);
    if (known != kernings_.cend()) return *known;
    const QChar both[] = {left, right};
    const double together = metrics_.horizontalAdvance(QString(both, 2));
    const auto kerning = static_cast<float>(together - widthOf(left) - widthOf(right));
    kernings_.insert(pair, kerning);
    return kerning;
}

float LineEstimate::overhangOf(QChar character) {
    if (character.unicode() >= kPlainEnd) return 0;
    float& known = overhangs_[character.unicode()];
    if (known == 0) {
        QTextLayout layout(character, font_);
        layout.beginLayout();
        QTextLine line = layout.createLine();
        constexpr double kEnough = 10000;
        line.setLineWidth(kEnough);
        layout.endLayout();
        known = 1 + std::max(0.0F, static_cast<float>(line.naturalTextWidth()) - widthOf(character));
    }
    return known - 1;
}

std::optional<int> LineEstimate::lines(const QString& text, double width) {
    if (text.size() > kLongest || text.startsWith(u' ')) return std::nullopt;
    std::array<unsigned char, 2 * kLongest> room;
    QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text.constData(), text.size(), room.data(),
                               static_cast<qsizetype>(room.size()));
    Lines lines(width);
    double word = 0;
    double blanks = 0;
    QChar last = kZeroWidthSpace;  // of the word
    qsizetype next = breaks.toNextBoundary();
    for (qsizetype at = 0; at < text.size(); ++at) {
        const float advance = widthOf(text[at]);
        if (advance < 0) return std::nullopt;
        if (at == next || (text[at] != u' ' && at > 0 && text[at - 1] == u' ')) {
            if (!lines.add(word, overhangOf(last), blanks)) return std::nullopt;
            word = blanks = 0;
            if (at == next) next = breaks.toNextBoundary();
        }
        const float kerning = at > 0 ? kerningOf(text[at - 1], text[at]) : 0;
        if (text[at] == u' ') {
            blanks += advance;
        } else {
            word += blanks + advance + kerning;
            blanks = 0;
            last = text[at];
        }
    }
    if (!lines.add(word, overhangOf(last), blanks)) return std::nullopt;
    return lines.count();
}

}  // namespace kestrix::ui
