#pragma once

#include "ui/Screen.h"

namespace kestrix::shell {

// What the pictures of the history screen show beside what it comes with. Each for the screen that is
// presented.
void showEmptyRecord(ui::Screen& presented);
void showExportMenu(ui::Screen& presented);
// The same of the mail.
void showTypedMail(ui::Screen& presented);
void showMailProblem(ui::Screen& presented);

}  // namespace kestrix::shell
