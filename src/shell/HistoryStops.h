#pragma once

#include "ui/Screen.h"

namespace kestrix::shell {

// What the pictures of the history screens show: a test record with a measurement of each kind, which these
// put into the folder of the tour. Each for the screen that is presented.
void showRecord(ui::Screen& presented);
void showEmptyRecord(ui::Screen& presented);
void showExportMenu(ui::Screen& presented);
void showMeasurement(ui::Screen& presented);

}  // namespace kestrix::shell
