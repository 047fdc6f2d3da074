#pragma once

#include <QString>

#include <cstdint>

namespace kestrix::shell {

// What stands in the title bar and the desktop's list of windows: the state of the link, the tester, and that
// it is none when its readings are made up.
// linkState: as the link publishes it. tester: its name, as it gave it; empty when none is there.
QString windowTitle(std::int32_t linkState, const QString& tester, bool simulated);

}  // namespace kestrix::shell
