#pragma once

#include <QString>

#include <map>
#include <utility>

#include "ui/LineEstimate.h"

namespace kestrix::ui {

// How much room a text takes. A seam: without a display there are no fonts.
class TextMeasure {
  public:
    virtual ~TextMeasure() = default;
    // The height, in points and at most maxHeight, of `text` wrapped to `width` points, at words where it
    // can. size: the font's, in points of the stage. 0 for the empty text.
    virtual double wrappedHeight(const QString& text, const QString& family, int size, double width,
                                 double maxHeight) const = 0;
};

// With the fonts of the system, as the screens draw them. Needs the QGuiApplication. What a text surely takes
// is told without laying it out; the answers are the same.
class FontTextMeasure final : public TextMeasure {
  public:
    double wrappedHeight(const QString& text, const QString& family, int size, double width,
                         double maxHeight) const override;
    // The width, in points, of the widest part between two places where a line may break.
    static double widestWord(const QString& text, const QString& family, int size);

  private:
    struct KnownFont {
        LineEstimate estimate;
        double lineHeight;
    };
    mutable std::map<std::pair<QString, int>, KnownFont> fonts_;
};

}  // namespace kestrix::ui
