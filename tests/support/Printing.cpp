#include "tests/support/Printing.h"

#include <QByteArray>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QUrl>

#include <ostream>

namespace {

void printSize(QSizeF size, std::ostream& out) {
    out << size.width() << " x " << size.height();
}

void printPoint(QPointF point, std::ostream& out) {
    out << '(' << point.x() << ", " << point.y() << ')';
}

void printPlace(QRectF place, std::ostream& out) {
    printSize(place.size(), out);
    out << " at ";
    printPoint(place.topLeft(), out);
}

}  // namespace

void PrintTo(const QByteArray& bytes, std::ostream* out) {
    *out << '"' << bytes.toPercentEncoding(" \t\n!#$&'()*+,/:;=?@[]{}<>|").toStdString() << '"';
}

void PrintTo(const QPoint& point, std::ostream* out) {
    printPoint(point, *out);
}

void PrintTo(const QPointF& point, std::ostream* out) {
    printPoint(point, *out);
}

void PrintTo(const QRect& place, std::ostream* out) {
    printPlace(place, *out);
}

void PrintTo(const QRectF& place, std::ostream* out) {
    printPlace(place, *out);
}

void PrintTo(const QSize& size, std::ostream* out) {
    printSize(size, *out);
}

void PrintTo(const QSizeF& size, std::ostream* out) {
    printSize(size, *out);
}

void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

void PrintTo(const QUrl& address, std::ostream* out) {
    *out << address.toString().toStdString();
}
