#pragma once

#include "ui/Screen.h"

namespace kestrix::shell {

// What the pictures of the save form show. Each for the form that is presented.
void showPlaceholders(ui::Screen& presented);
void showTypedForm(ui::Screen& presented);
void showFailedSave(ui::Screen& presented);

}  // namespace kestrix::shell
