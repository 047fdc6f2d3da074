#include "shell/WindowPlace.h"

#include <algorithm>

namespace kestrix::shell {
namespace {

const QString kLeft = QStringLiteral("windowLeft");
const QString kTop = QStringLiteral("windowTop");
const QString kWidth = QStringLiteral("windowWidth");
const QString kHeight = QStringLiteral("windowHeight");
const QString kFullScreen = QStringLiteral("windowFullScreen");
const QString kHasPosition = QStringLiteral("windowHasPosition");

constexpr int kFarthest = 1'000'000;

qint64 commonArea(const QRect& one, const QRect& other) {
    const QRect common = one & other;
    return common.isEmpty() ? 0 : qint64{common.width()} * common.height();
}

}  // namespace

WindowPlace placeOnScreens(const WindowPlace& wanted, const QList<QRect>& screens, const QSize& frame) {
    if (screens.isEmpty()) return wanted;
    WindowPlace place = wanted;
    const QRect outline(wanted.position.value_or(QPoint()), wanted.size + frame);
    const QRect screen =
        wanted.position ? *std::max_element(screens.begin(), screens.end(),
                                            [&](const QRect& one, const QRect& other) {
                                                return commonArea(one, outline) < commonArea(other, outline);
                                            })
                        : screens.first();
    place.size = wanted.size.boundedTo(screen.size() - frame);
    // On a screen that is not there any more: where the desktop puts it.
    if (commonArea(screen, outline) == 0) place.position.reset();
    if (place.position) {
        const QSize free = screen.size() - frame - place.size;
        place.position = {std::clamp(place.position->x(), screen.left(), screen.left() + free.width()),
                          std::clamp(place.position->y(), screen.top(), screen.top() + free.height())};
    }
    return place;
}

std::optional<WindowPlace> rememberedPlace(const platform::UserDefaults& settings) {
    WindowPlace place;
    // Whatever stands there: nothing is so large or so far away that it could not be added to.
    const auto read = [&settings](const QString& key) {
        return std::clamp(settings.integerForKey(key), -kFarthest, kFarthest);
    };
    place.size = {read(kWidth), read(kHeight)};
    if (place.size.isEmpty()) return std::nullopt;
    if (settings.boolForKey(kHasPosition)) place.position = QPoint(read(kLeft), read(kTop));
    place.fullScreen = settings.boolForKey(kFullScreen);
    return place;
}

void rememberPlace(platform::UserDefaults& settings, const WindowPlace& place) {
    if (rememberedPlace(settings) == place) return;
    settings.setInteger(kWidth, place.size.width());
    settings.setInteger(kHeight, place.size.height());
    settings.setBool(kHasPosition, place.position.has_value());
    if (place.position) {
        settings.setInteger(kLeft, place.position->x());
        settings.setInteger(kTop, place.position->y());
    }
    settings.setBool(kFullScreen, place.fullScreen);
}

}  // namespace kestrix::shell
