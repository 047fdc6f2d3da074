#include "apps/kestrix/TourPictures.h"

#include <QCoreApplication>
#include <QCursor>
#include <QImage>

#include <iostream>

#include "apps/kestrix/TourFolder.h"
#include "ui/DisplayUpdates.h"

namespace kestrix::tour {
namespace {

constexpr QSize kStage{320, 568};
constexpr QPoint kNoMouse{100'000, 100'000};

QImage pictureOf(shell::StageWindow& window, int scale) {
    window.resize(kStage * scale);
    QCoreApplication::processEvents();
    ui::DisplayUpdates::shared().flush();
    return window.grabWindow();
}

}  // namespace

void hideMouse() {
    QCursor::setPos(kNoMouse);
}

bool savePictures(shell::StageWindow& window, const QDir& folder, const char* name) {
    for (const int scale : kScales) {
        const QString file = folder.filePath(picturesFolder(scale) + u'/' + QLatin1String(name) + ".png");
        if (!pictureOf(window, scale).save(file)) return failTour("cannot write " + file) == 0;
        std::cout << file.toStdString() << '\n';
    }
    return true;
}

int failTour(const QString& why) {
    std::cerr << "kestrix: " << why.toStdString() << '\n';
    return 1;
}

}  // namespace kestrix::tour
