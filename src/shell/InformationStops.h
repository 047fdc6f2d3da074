#pragma once

#include "ui/Screen.h"

namespace kestrix::shell {

// What the pictures of a page that scrolls show beside its beginning. Each for the screen that is presented.
void showSecondPage(ui::Screen& presented);
void showThirdPage(ui::Screen& presented);
void showFourthPage(ui::Screen& presented);
void showLastPage(ui::Screen& presented);

}  // namespace kestrix::shell
