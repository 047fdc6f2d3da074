#pragma once

#include <QString>

#include "ui/Services.h"

namespace kestrix::shell {

// Has the desktop open the web page. Where it cannot, a notice says so with the address, which can be typed
// elsewhere.
void openOrSay(const ui::Services& services, const QString& address);

}  // namespace kestrix::shell
