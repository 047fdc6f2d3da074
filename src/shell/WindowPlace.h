#pragma once

#include <QList>
#include <QRect>
#include <QSize>

#include <optional>

#include "platform/UserDefaults.h"

namespace kestrix::shell {

// Where a window stands, and how large it is. In device-independent pixels; the position is that of its
// frame.
struct WindowPlace {
    std::optional<QPoint> position;  // none: where the desktop puts it
    QSize size;
    bool fullScreen = false;
    bool operator==(const WindowPlace&) const = default;
};

// The place for a window that is to have `wanted`: no larger than a screen, and with all of it on one, so
// that its title bar and the record button at its bottom can be reached. screens: the parts of the screens
// that windows may cover, the main one first. frame: how much larger the window is with its frame.
WindowPlace placeOnScreens(const WindowPlace& wanted, const QList<QRect>& screens, const QSize& frame);

// What the settings remember. None when there is nothing that can be used.
std::optional<WindowPlace> rememberedPlace(const platform::UserDefaults& settings);
void rememberPlace(platform::UserDefaults& settings, const WindowPlace& place);

}  // namespace kestrix::shell
