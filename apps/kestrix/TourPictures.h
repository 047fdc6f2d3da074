#pragma once

#include <QDir>

#include "shell/StageWindow.h"

namespace kestrix::tour {

// The mouse is nowhere, so that nothing shows as pointed at.
void hideMouse();

// Writes the picture of what the window shows now, at every scale, and says each on standard output. False,
// with the reason said, when one cannot be written.
bool savePictures(shell::StageWindow& window, const QDir& folder, const char* name);

// Says why the tour ends, on standard error. The exit status.
int failTour(const QString& why);

}  // namespace kestrix::tour
