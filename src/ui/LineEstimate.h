#pragma once

#include <QFont>
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
    explicit LineEstimate(const QFont& font) : font_(font), metrics_(font) {}

    // Of a text whose places to break are marked (see withLineBreaks). None: it must be laid out. width: of
    // the lines, in points.
    std::optional<int> lines(const QString& text, double width);

  private:
    // Negative for a character that the font lacks, or that is more than a glyph beside others.
    float widthOf(QChar character);
    // By how much two characters stand closer (negative) or further apart than their widths say.
    float kerningOf(QChar left, QChar right);

    // How much more room a layout gives to the character where it ends a word.
    float overhangOf(QChar character);

    static constexpr char16_t kPlainEnd = 0x400;  // Latin and Greek
    QFont font_;
    QFontMetricsF metrics_;
    std::array<float, kPlainEnd> widths_{};     // 0: not asked for yet
    std::array<float, kPlainEnd> overhangs_{};  // 0: not asked for yet; else 1 more
    QHash<std::uint32_t, float> kernings_;
};

}  // namespace kestrix::ui
