// Keeps drawn pictures as the screen takes them, for the build: pixels FILE.png FILE.pixels [...]. Decoding a
// PNG takes a start longer than all else that a picture needs.
#include <QFile>
#include <QImage>

#include <cstdio>

#include "artwork/Pixels.h"

namespace {

bool isOpaque(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(row[x]) != 255) return false;
    }
    return true;
}

bool keep(const QString& drawing, const QString& pixels) {
    QImage image(drawing);
    if (image.isNull()) return false;
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    if (isOpaque(image)) image.reinterpretAsFormat(QImage::Format_RGB32);  // drawn without mixing
    QFile file(pixels);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) return false;
    const kestrix::artwork::PixelsHead head{image.width(), image.height(), image.format()};
    file.write(reinterpret_cast<const char*>(&head), sizeof head);
    for (int y = 0; y < image.height(); ++y)
        file.write(reinterpret_cast<const char*>(image.constScanLine(y)), qint64{4} * image.width());
    return file.flush();
}

}  // namespace

int main(int argc, char** argv) {
    for (int file = 1; file + 1 < argc; file += 2) {
        if (keep(QString::fromLocal8Bit(argv[file]), QString::fromLocal8Bit(argv[file + 1]))) continue;
        std::fprintf(stderr, "%s cannot be kept as %s\n", argv[file], argv[file + 1]);
        return 1;
    }
    return 0;
}
