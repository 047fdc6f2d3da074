#pragma once

#include <cstdlib>

namespace kestrix::bench {

// Before the QGuiApplication: the software renderer into memory, and each change drawn in the next turn of
// the event loop, as the application has it, unless the environment says how long it waits.
inline void drawWithoutDisplay() {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("QT_QUICK_BACKEND", "software", 1);
    setenv("QT_QPA_UPDATE_IDLE_TIME", "0", 0);
}

}  // namespace kestrix::bench
