#pragma once

#include <QFontMetricsF>
#include <QHash>
#include <QString>

#include <array>
#include <optional>

namespace kestrix::ui {

// How many lines a plain text takes when it is wrapped at its words, told from the widths of its characters.
// It answers only where that is certain, and is many times as quick as laying the text out.
class LineEstimate {
  public:
    explicit LineEstimate(const QFont& font) : metrics_(font) {}

    // Of a text whose places to break are marked (see withLineBreaks). None: it must be laid out. width: of
    // the lines, in points.
    std::optional<int> lines(const QString& text, double width);

  private:
    // Negative for a character that the font lacks, or that is more than a glyph beside others.
    float widthOf(QChar character);
    // By how much two characters stand closer (negative) or further apart than their widths say.
    float kerningOf(QChar left, QChar right);

    static constexpr char16_t kPlainEnd = 0x400;  // Latin and Greek
    QFontMetricsF metrics_;
    std::array<float, kPlainEnd> widths_{};  // 0: not asked for yet
    QHash<std::uint32_t, float> kernings_;
};

}  // namespace kestrix::ui
