#pragma once

#include "ui/Screen.h"

namespace kestrix::shell {

// The state of the tester's screen for its picture: an address and a capture typed.
void showTypedAddress(ui::Screen& presented);

}  // namespace kestrix::shell
