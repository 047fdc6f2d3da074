#include "ui/StageMetrics.h"

#include <algorithm>
#include <cmath>

namespace kestrix::ui {

StageMetrics& StageMetrics::shared() {
    static StageMetrics metrics;
    return metrics;
}

void StageMetrics::fit(const QSizeF& window, double devicePixelRatio) {
    if (window.isEmpty() || (window == window_ && devicePixelRatio == devicePixelRatio_)) return;
    window_ = window;
    devicePixelRatio_ = devicePixelRatio;
    factor_ = std::min(window.width() / kWidth, window.height() / kLeastHeight);
    height_ = window.height() / factor_;
    const double pixels = factor_ * devicePixelRatio;  // in a point
    const double freeWidth = window.width() - factor_ * kWidth;
    // On a whole pixel, or every line of the stage would be blurred.
    left_ = std::floor(freeWidth / 2 * devicePixelRatio) / devicePixelRatio;
    // A picture that is a little too small is blurred less than one that is made smaller by nearly half.
    constexpr double kTolerance = 0.1;
    pictureScale_ = std::clamp(static_cast<int>(std::ceil(pixels - kTolerance)), 1, kLargestPictureScale);
    line_ = std::max(1.0, std::round(pixels)) / pixels;
    Q_EMIT changed();
}

QUrl StageMetrics::picture(const QString& name, int scale) const {
    if (name.isEmpty()) return {};
    return QUrl(QStringLiteral("image://artwork/%1/%2").arg(scale).arg(name));
}

}  // namespace kestrix::ui
