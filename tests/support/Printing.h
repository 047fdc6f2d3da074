#pragma once

#include <cstdint>
#include <iosfwd>

// How values are written when a test fails: as a person would say them. Every file of a test program sees
// this first (the compiler is told so), so that no type is written one way here and another way there; hence
// it declares, and includes next to nothing.
class QByteArray;
class QColor;
class QPoint;
class QPointF;
class QRect;
class QRectF;
class QSize;
class QSizeF;
class QString;
class QUrl;

void PrintTo(const QByteArray& bytes, std::ostream* out);
void PrintTo(const QColor& colour, std::ostream* out);  // "#2779cd", "#2779cd at 20 %"
void PrintTo(const QPoint& point, std::ostream* out);   // "(10, 20)"
void PrintTo(const QPointF& point, std::ostream* out);
void PrintTo(const QRect& place, std::ostream* out);  // "320 x 44 at (0, 0)"
void PrintTo(const QRectF& place, std::ostream* out);
void PrintTo(const QSize& size, std::ostream* out);  // "320 x 44"
void PrintTo(const QSizeF& size, std::ostream* out);
void PrintTo(const QString& text, std::ostream* out);  // in quotation marks
void PrintTo(const QUrl& address, std::ostream* out);

namespace kestrix::ui {
enum class ScreenId : std::uint8_t;
void PrintTo(ScreenId id, std::ostream* out);  // its name
}  // namespace kestrix::ui
