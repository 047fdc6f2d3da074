#include "artwork/Pictures.h"

#include <QByteArray>
#include <QResource>
#include <QtGlobal>

#include <cstring>

#include "artwork/Pixels.h"

// The macro declares a function of the global namespace and must stand there.
static void initResource() {
    Q_INIT_RESOURCE(artwork);
    Q_INIT_RESOURCE(artwork_lessons);
}

namespace kestrix::artwork {
namespace {

void forget(void* bytes) {
    delete static_cast<QByteArray*>(bytes);
}

constexpr int kLargestScale = 4;

// The picture as it is kept; none when it is not kept at this scale.
QImage kept(const QString& stem, int scale) {
    const QResource resource(QStringLiteral(":/artwork/%1/%2.pixels").arg(scale).arg(stem));
    if (!resource.isValid()) return {};
    auto* const bytes = new QByteArray(resource.uncompressedData());
    PixelsHead head;
    std::memcpy(&head, bytes->constData(), sizeof head);
    // The image holds the bytes, and lets them go with its last copy.
    const QImage image(reinterpret_cast<const uchar*>(bytes->constData()) + sizeof head, head.width,
                       head.height, qsizetype{4} * head.width, static_cast<QImage::Format>(head.format),
                       forget, bytes);
    const bool aligned = reinterpret_cast<std::uintptr_t>(bytes->constData()) % alignof(std::uint32_t) == 0;
    return aligned ? image : image.copy();  // what was not worth packing lies anywhere in the program
}

}  // namespace

void load() {
    initResource();
}

QImage picture(const QString& name, int scale) {
    const QString stem = name.endsWith(QLatin1String(".png")) ? name.chopped(4) : name;
    if (QImage image = kept(stem, scale); !image.isNull()) return image;
    if (scale < 1 || scale >= kLargestScale) return {};
    const QImage largest = kept(stem, kLargestScale);
    if (largest.isNull()) return {};
    return largest.scaled(largest.size() * scale / kLargestScale, Qt::IgnoreAspectRatio,
                          Qt::SmoothTransformation);
}

}  // namespace kestrix::artwork
